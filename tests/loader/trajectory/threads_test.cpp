// SPDX-License-Identifier: BSD-3-Clause
// Pins that loads of two databases onto two grids run at the same time; also for the thread sanitizer.
#include "tests/loader/trajectory/flight.h"

#include <thread>

namespace {

using namespace flight;

class TwoLoads : public Load {
 protected:
  struct Result {
    std::string text;
    Nimbra::Grid grid;
  };
  static void loadInto(Result& result, const std::string& file, int code) {
    result.text = Riegl::pofx2nimbra(file, result.grid, code, nullptr, "", nullptr);
  }
  static std::vector<Point> positionsOf(const Result& result, const std::string& fragment) {
    return support::values<Point>(support::field(result.grid, "Positions"), fragment);
  }
};

TEST_F(TwoLoads, DoNotDisturbEachOther) {
  givenFlight(200);
  const std::string other = directory.path("other.pofx");
  support::writeDatabase(other, 100, columns(), gpsTimeBase);
  Result first, second, firstAlone, secondAlone;
  std::thread one([&] { loadInto(first, path, 32633); });
  std::thread two([&] { loadInto(second, other, 4978); });
  one.join();
  two.join();
  loadInto(firstAlone, path, 32633);
  loadInto(secondAlone, other, 4978);
  EXPECT_EQ(first.text + second.text, "");
  EXPECT_EQ(positionsOf(first, "flight_Fragment_0"), positionsOf(firstAlone, "flight_Fragment_0"));
  EXPECT_EQ(positionsOf(second, "other_Fragment_0"), positionsOf(secondAlone, "other_Fragment_0"));
  EXPECT_EQ(positionsOf(second, "other_Fragment_0").size(), 100u);
  EXPECT_EQ(console.lines().size(), 4U);
}

} // namespace
