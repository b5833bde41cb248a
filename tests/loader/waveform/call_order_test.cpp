// SPDX-License-Identifier: BSD-3-Clause
// The requests of the reader to the client, their order, and the record after a failure of each.
#include "tests/loader/waveform/read_state.h"
#include "tests/loader/waveform/scan_items.h"
#include "tests/scripted/script.h"
#include "tests/support/output_log.h"

#include <gmock/gmock.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Record = Riegl::AttributesForFWFProcessing;
using testing::ElementsAreArray;

/// All requests of a read, with empty fallbacks.
const std::vector<std::string> requests = {"MetaData::get(riegl.atmosphere,)",
                                           "MetaData::get(riegl.waveform_info,)",
                                           "MetaData::get(riegl.atmosphere,)",
                                           "MetaData::get(riegl.waveform_info,)",
                                           "MetaData::get(riegl.device,)",
                                           "MetaData::get(riegl.device,)",
                                           "MetaData::get(riegl.device,)",
                                           "MetaData::get(riegl.time_base,)",
                                           "MetaData::get(riegl.mta_settings,)",
                                           "MetaData::get(debug.rxp_parameters,)",
                                           "MetaData::get(riegl.exponential_decomposition,)"};

/// Reads the whole metadata; call `number` of the client fails, none if 0. A request is two calls: one for
/// the metadata, one for an item.
std::string readFailingAt(int number, scripted::Raised raised, Record& record) {
  scripted::Script& script = scripted::newScript();
  script.metadata = support::scanItems();
  const riegl::rdb::Pointcloud pointcloud{riegl::rdb::Context("", "")};
  script.calls.clear();
  script.raiseAt = number == 0 ? 0 : script.raisingCalls + number;
  script.raised = raised;
  return record.getAttributesViaJson(pointcloud);
}

TEST(Requests, AreMadeInOrderWithEmptyFallbacks) {
  const support::OutputLog log;
  Record record;
  EXPECT_EQ(readFailingAt(0, scripted::Raised::clientError, record), "");
  EXPECT_THAT(scripted::script().callsThatBegin("MetaData::"), ElementsAreArray(requests));
  EXPECT_TRUE(record.a_real && record.refl_tableC);
}

/// State of the record when request `number` fails.
std::vector<std::string> stateAt(int number) {
  if (number <= 9) {
    return support::stoppedAfter(static_cast<std::size_t>(number - 1),
                                 number >= 5 && number <= 8 ? "-" : "0");
  }
  return support::stoppedAfter(9, number == 10 ? "earlier" : "read");
}

int callsMade() {
  const scripted::Script& script = scripted::script();
  return static_cast<int>(script.callsThatBegin("metaData").size() +
                          script.callsThatBegin("MetaData").size());
}

class FailingCall : public testing::TestWithParam<int> {
 protected:
  int request() const { return (GetParam() + 1) / 2; }
};

TEST_P(FailingCall, PassesTheClientsErrorThrough) {
  const support::OutputLog log;
  Record record = support::filledRecord();
  EXPECT_THROW(readFailingAt(GetParam(), scripted::Raised::clientError, record), riegl::rdb::Error);
  EXPECT_EQ(callsMade(), GetParam());
  EXPECT_THAT(support::state(record), ElementsAreArray(stateAt(request())));
  EXPECT_THAT(log.said(), testing::SizeIs(request() > 4 ? 1 : 0));
  EXPECT_FALSE(record.a_real);
}

TEST_P(FailingCall, PassesOtherExceptionsThrough) {
  const support::OutputLog log;
  Record record = support::filledRecord();
  EXPECT_THROW(readFailingAt(GetParam(), scripted::Raised::standardException, record), std::runtime_error);
  EXPECT_THAT(support::state(record), ElementsAreArray(stateAt(request())));
}

INSTANTIATE_TEST_SUITE_P(Requests, FailingCall, testing::Range(1, 23));

} // namespace
