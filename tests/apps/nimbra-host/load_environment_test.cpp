// SPDX-License-Identifier: BSD-3-Clause
// Pins that the host's trajectory load leaves PROJ_LIB as it was, so that other users of PROJ find their data.
#include "apps/nimbra-host/load.h"
#include "tests/loader/trajectory/flight.h"
#include "tests/support/changed_variable.h"

#include <cstdlib>
#include <proj.h>

namespace {

class HostLoad : public flight::Load {
 protected:
  void loadFlight(int code) {
    givenFlight(3);
    outcome = nimbrahost::runLoad({.file = path, .epsgCode = code});
  }

  /// Whether a new user of PROJ in this process can look a code up.
  static bool projFindsItsData() {
    PJ_CONTEXT* const context = proj_context_create();
    proj_log_level(context, PJ_LOG_NONE);
    PJ* const found = proj_create(context, "EPSG:32633");
    proj_destroy(found);
    proj_context_destroy(context);
    return found != nullptr;
  }

  const support::ChangedVariable unset{"PROJ_LIB", std::nullopt};
  nimbrahost::LoadOutcome outcome;
};

TEST_F(HostLoad, LeavesAnUnsetVariableUnset) {
  loadFlight(32633);
  EXPECT_EQ(outcome.result, "");
  EXPECT_EQ(std::getenv("PROJ_LIB"), nullptr);
}

TEST_F(HostLoad, LeavesTheVariablesValue) {
  const support::ChangedVariable named("PROJ_LIB", "/usr/share/proj:/elsewhere");
  loadFlight(32633);
  EXPECT_EQ(outcome.result, "");
  EXPECT_STREQ(std::getenv("PROJ_LIB"), "/usr/share/proj:/elsewhere");
}

TEST_F(HostLoad, LeavesTheVariableAfterAFailure) {
  loadFlight(999999);
  EXPECT_NE(outcome.result, "");
  EXPECT_EQ(std::getenv("PROJ_LIB"), nullptr);
}

TEST_F(HostLoad, LetsAnotherUserOfProjFindItsData) {
  loadFlight(32633);
  EXPECT_TRUE(projFindsItsData());
  // What a load of a host that restores nothing leaves behind:
  const support::ChangedVariable left("PROJ_LIB", directory.root().string());
  EXPECT_FALSE(projFindsItsData());
}

} // namespace
