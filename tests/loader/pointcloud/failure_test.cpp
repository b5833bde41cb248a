// SPDX-License-Identifier: BSD-3-Clause
// A client that fails at call k, for every k of a load: result text, content of the grid, and no leak.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/scripted/script.h"
#include "tests/support/grid.h"

#include <gtest/gtest.h>

namespace {

using scripted::Raised;
using support::field;

constexpr const char* gpsTuesday = R"({"epoch":"2015-10-27T00:00:00+00:00","source":"GNSS","system":"GPS"})";

/// A load of two blocks of two columns.
void givenTwoBlocks() {
  scripted::Script& script = scripted::newScript();
  script.columns["riegl.timestamp"] = nullptr;
  script.columns["riegl.amplitude"] = nullptr;
  script.metadata["riegl.time_base"] = gpsTuesday;
  script.blocks = {2, 1};
}

/// Loads; the client fails at call `k`.
std::string loadFailingAt(int k, Raised raised, Nimbra::Grid& grid) {
  givenTwoBlocks();
  scripted::script().raiseAt = k;
  scripted::script().raised = raised;
  return Riegl::rdbx2Z4("scan.rdbx", grid, 0, true, nullptr);
}

/// Number of calls of a load that can fail.
int failingCalls() {
  givenTwoBlocks();
  Nimbra::Grid grid;
  EXPECT_EQ(Riegl::rdbx2Z4("scan.rdbx", grid, 0, true, nullptr), "");
  return scripted::script().raisingCalls;
}

/// The call at which the client failed.
std::string failedCall() {
  for (auto call = scripted::script().calls.rbegin(); call != scripted::script().calls.rend(); ++call) {
    if ((*call)[0] != '~') {
      return *call;
    }
  }
  return std::string();
}

std::vector<std::string> ends() {
  return scripted::script().callsThatBegin("~");
}

TEST(FailingClient, GivesItsTextForEveryCallOfALoad) {
  const int calls = failingCalls();
  ASSERT_GT(calls, 3 * 62 * 2);
  for (int k = 1; k <= calls; ++k) {
    Nimbra::Grid grid;
    EXPECT_EQ(loadFailingAt(k, Raised::clientError, grid),
              "scripted failure (call " + std::to_string(k) + ")");
    EXPECT_EQ(scripted::script().raisingCalls, k);
  }
}

TEST(FailingClient, GivesAnyOtherExceptionsTextAlone) {
  const int calls = failingCalls();
  for (int k = 1; k <= calls; k += 7) {
    Nimbra::Grid grid;
    EXPECT_EQ(loadFailingAt(k, Raised::standardException, grid), "scripted exception");
  }
}

TEST(FailingClient, LeavesNoClientObjectAliveAndEndsThemInOrder) {
  const int calls = failingCalls();
  const std::vector<std::string> all{"~QuerySelect", "~OpenSettings", "~Pointcloud", "~Context"};
  for (int k = 1; k <= calls; ++k) {
    Nimbra::Grid grid;
    loadFailingAt(k, Raised::clientError, grid);
    EXPECT_EQ(scripted::script().liveObjects, 0) << "at call " << k;
    const std::vector<std::string> seen = ends();
    ASSERT_LE(seen.size(), all.size());
    EXPECT_TRUE(std::equal(seen.rbegin(), seen.rend(), all.rbegin()))
        << "at call " << k << ", " << failedCall();
  }
}

TEST(FailingClient, LeavesTheGridAsItWasUntilTheQueryIsMade) {
  for (int k = 1;; ++k) {
    Nimbra::Grid grid;
    loadFailingAt(k, Raised::clientError, grid);
    EXPECT_TRUE(grid.representations().empty()) << failedCall();
    if (failedCall() == "select()") {
      break;
    }
  }
}

TEST(FailingClient, LeavesRepresentationsAndPositionsUntilTheFirstRead) {
  Nimbra::Grid grid;
  loadFailingAt(8, Raised::clientError, grid);
  ASSERT_EQ(failedCall(), "select()");
  loadFailingAt(9, Raised::clientError, grid);
  EXPECT_EQ(failedCall(), "pointAttribute()");
  EXPECT_EQ(grid.representations().size(), 2U);
  EXPECT_EQ(support::fieldNames(grid), std::vector<std::string>{"Positions"});
  EXPECT_TRUE(field(grid, "Positions")->fragments().empty());
}

TEST(FailingClient, LeavesAFieldWhoseBindingFailed) {
  const int calls = failingCalls();
  for (int k = 1; k <= calls; ++k) {
    Nimbra::Grid grid;
    loadFailingAt(k, Raised::clientError, grid);
    if (failedCall() == "bind(riegl.amplitude,9,0)") {
      EXPECT_TRUE(field(grid, "Amplitude"));
      return;
    }
  }
  FAIL() << "no call binds the amplitude";
}

TEST(FailingClient, LeavesTheFragmentsOfTheBlocksBeforeIt) {
  const int calls = failingCalls();
  std::size_t reads = 0;
  for (int k = 1; k <= calls; ++k) {
    Nimbra::Grid grid;
    loadFailingAt(k, Raised::clientError, grid);
    if (failedCall() == "next(5000000)") {
      EXPECT_EQ(field(grid, "GPSTime")->fragments().size(), reads);
      EXPECT_EQ(field(grid, "Amplitude")->fragments().size(), reads);
      ++reads;
    }
  }
  EXPECT_EQ(reads, 3U);
}

TEST(FailingClient, MayFailForEverAndTheLoadStillEnds) {
  Nimbra::Grid grid;
  givenTwoBlocks();
  scripted::script().raiseAt = 5;
  scripted::script().raiseForEver = true;
  EXPECT_EQ(Riegl::rdbx2Z4("scan.rdbx", grid, 0, true, nullptr), "scripted failure (call 5)");
}

TEST(FailingClient, RaisesWhatIsNoExceptionThroughTheLoad) {
  scripted::Script& script = scripted::newScript();
  script.columns["riegl.amplitude"] = [](void*, unsigned int, std::uint64_t) { throw 7; };
  script.blocks = {1};
  Nimbra::Grid grid;
  EXPECT_THROW(Riegl::rdbx2Z4("scan.rdbx", grid, 0, true, nullptr), int);
  EXPECT_EQ(script.liveObjects, 0);
}

TEST(FailingClient, LeavesTheTimeBasesOwnExceptionAsItsText) {
  scripted::Script& script = scripted::newScript();
  script.metadata["riegl.time_base"] = R"({"epoch":"x-10-27"})";
  Nimbra::Grid grid;
  EXPECT_EQ(Riegl::rdbx2Z4("scan.rdbx", grid, 0, true, nullptr), "stoi");
  EXPECT_TRUE(grid.representations().empty());
}

} // namespace
