// SPDX-License-Identifier: BSD-3-Clause
// Each call of a load to the client fails in turn: the exact result, the grid, and no client object alive.
#include "tests/loader/trajectory/scripted_load.h"

namespace {

using namespace flight;

class RaisingCall : public ScriptedLoad {
 protected:
  RaisingCall() {
    script.metadata = {{"riegl.geo_tag", "{}"},
                       {"riegl.time_base", R"({"epoch":"2023-05-04T00:00:00Z","system":"UTC"})"},
                       {"riegl.trajectory_info", "{}"}};
    script.blocks = {3};
    leverArm = "/nowhere/lever-arm.txt"; // its text would show that the file was opened
  }

  /// Loads onto a new grid; call `k` fails.
  /// \return the result, and the grid in `fresh`
  std::string loadFailingAt(int k, Nimbra::Grid& fresh) {
    script.calls.clear();
    script.raisingCalls = 0;
    script.raiseAt = k;
    return Riegl::pofx2nimbra("/data/flight.pofx", fresh, 32633, nullptr, leverArm, nullptr);
  }

  int callsOfALoad() {
    Nimbra::Grid fresh;
    EXPECT_EQ(loadFailingAt(0, fresh), "pofx2nimbra:Error opening leverarm file: /nowhere/lever-arm.txt");
    return script.raisingCalls;
  }

  /// Objects are destroyed in the opposite order of their construction: query, settings, database, context.
  void expectClosedInOrder(int k) const {
    Calls expected{"~QuerySelect", "~OpenSettings", "~Pointcloud", "~Context"};
    expected.erase(expected.begin(), expected.end() - objectsMadeBefore(k));
    EXPECT_EQ(script.callsThatBegin("~"), expected) << "call " << k;
    EXPECT_EQ(script.liveObjects, 0) << "call " << k;
  }

  static int objectsMadeBefore(int k) {
    constexpr int made[] = {0, 0, 1, 2, 3, 3}; // context, database, settings, open, select
    return k <= 5 ? made[k] : 4;
  }

  /// Fields exist from the first column on, fragments from the end of the first block on.
  void expectGridOf(const Nimbra::Grid& fresh) const {
    const bool published = script.callsThatBegin("transform").size() == 1;
    const std::size_t binds = script.callsThatBegin("bind").size();
    EXPECT_EQ(support::fieldNames(fresh).size(), std::min<std::size_t>(binds + (binds > 4 ? 1 : 0), 6));
    for (const std::string& name : support::fieldNames(fresh)) {
      EXPECT_EQ(support::fragmentNames(support::field(fresh, name)).size(), published ? 1U : 0U) << name;
    }
  }
};

TEST_F(RaisingCall, OfTheClientEndsTheLoadWithItsTexts) {
  const int calls = callsOfALoad();
  EXPECT_EQ(calls, 12 + 21 + 3 + 1 + 21 + 1);
  for (int k = 1; k <= calls; ++k) {
    Nimbra::Grid fresh;
    EXPECT_EQ(loadFailingAt(k, fresh),
              "scripted failure (call " + std::to_string(k) + ") for File: /data/flight.pofx");
    expectClosedInOrder(k);
    expectGridOf(fresh);
  }
}

TEST_F(RaisingCall, OfAnotherKindEndsTheLoadWithItsText) {
  script.raised = scripted::Raised::standardException;
  for (const int k : {1, 2, 4, 5, 9, 13, 29, 34, 37, 40, 59}) {
    Nimbra::Grid fresh;
    EXPECT_EQ(loadFailingAt(k, fresh), "scripted exception For File /data/flight.pofx");
    expectClosedInOrder(k);
  }
}

TEST_F(RaisingCall, ForEverDoesNoMore) {
  script.raiseForEver = true;
  for (const int k : {1, 3, 5, 20, 37}) {
    Nimbra::Grid fresh;
    EXPECT_EQ(loadFailingAt(k, fresh),
              "scripted failure (call " + std::to_string(k) + ") for File: /data/flight.pofx");
    EXPECT_EQ(script.raisingCalls, k);
  }
}

} // namespace
