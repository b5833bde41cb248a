// SPDX-License-Identifier: BSD-3-Clause
// Each promise as a test of its own, for the client and the adapter of this build.
#include "conformance/promise.h"

#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>
#include <ostream>

namespace conformance {

static void PrintTo(const Promise& promise, std::ostream* stream) {
  *stream << promise.sentence;
}

namespace {

class PromiseOf : public testing::TestWithParam<Promise> {};

TEST_P(PromiseOf, Client) {
  const support::TempDir folder;
  const Outcome outcome = check(GetParam(), folder.root().string());
  EXPECT_TRUE(outcome.kept) << "expected  " << outcome.expectation << "\nfound     " << outcome.finding;
}

INSTANTIATE_TEST_SUITE_P(CLIENT_NAME, PromiseOf, testing::ValuesIn(promises()),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace conformance
