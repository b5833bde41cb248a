// SPDX-License-Identifier: BSD-3-Clause
// Every exception of a program becomes one line and a status.
#include "apps/common/program.h"

#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <sstream>
#include <stdexcept>

namespace {

TEST(Program, ReturnsTheStatusOfItsWork) {
  std::ostringstream err;
  EXPECT_EQ(apps::runGuarded("program", err, [] { return 3; }), 3);
  EXPECT_EQ(err.str(), "");
}

TEST(Program, EveryExceptionIsOneLineAndStatusOne) {
  struct Case {
    std::function<int()> work;
    const char* line;
  };
  for (const auto& [work, line] : {
           Case{[]() -> int { throw std::bad_alloc(); }, "program: out of memory\n"},
           Case{[]() -> int { throw std::bad_array_new_length(); }, "program: out of memory\n"},
           Case{[]() -> int { throw std::runtime_error("a.png: no\n\x1b"); },
                "program: a.png: no\\x0a\\x1b\n"},
           Case{[]() -> int { throw 7; }, "program: ended by an exception of an unknown type\n"},
       }) {
    std::ostringstream err;
    EXPECT_EQ(apps::runGuarded("program", err, work), 1);
    EXPECT_EQ(err.str(), line);
  }
}

TEST(Program, LostOutputIsOneLine) {
  std::ostringstream out, err;
  EXPECT_TRUE(apps::flushOutput("program", out, err));
  EXPECT_EQ(err.str(), "");
  out.setstate(std::ios::badbit);
  EXPECT_FALSE(apps::flushOutput("program", out, err));
  EXPECT_EQ(err.str(), "program: cannot write to standard output\n");
}

} // namespace
