// SPDX-License-Identifier: BSD-3-Clause
// Loads a trajectory, prints the result and the easting of the first position: load_program FILE EPSG
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/support/grid.h"

#include <cstdio>
#include <cstdlib>

int main(int count, char** arguments) {
  if (count != 3) {
    return 2;
  }
  Nimbra::Grid grid;
  const std::string result =
      Riegl::pofx2nimbra(arguments[1], grid, std::atoi(arguments[2]), Riegl::ChunkCallback(), "", nullptr);
  std::printf("%s\n", result.c_str());
  if (result.empty()) {
    using Point = Quillon::PhysicalSpace::point;
    const auto points = support::values<Point>(support::field(grid, "Positions"), "flight_Fragment_0");
    std::printf("%.4f\n", points.at(0)[0]);
  }
  return result.empty() ? 0 : 1;
}
