// SPDX-License-Identifier: BSD-3-Clause
// The console: one line per statement, to the host's sink or to standard error, never mixed between threads.
#include "model/torvel/objects/console.h"

#include "tests/support/console_lines.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <thread>

using Torvel::Console;

namespace {

TEST(ConsoleOutput, StatementIsOneLine) {
  const support::ConsoleLines console;
  Console() << "parseDate: "
            << "no date in "
            << "\"\"";
  EXPECT_THAT(console.lines(), testing::ElementsAre("parseDate: no date in \"\""));
}

TEST(ConsoleOutput, NothingIsWrittenBeforeTheEndOfTheStatement) {
  const support::ConsoleLines console;
  {
    Console line;
    line << "waiting";
    EXPECT_THAT(console.lines(), testing::IsEmpty());
  }
  EXPECT_THAT(console.lines(), testing::ElementsAre("waiting"));
}

TEST(ConsoleOutput, EmptyStatementIsAnEmptyLine) {
  const support::ConsoleLines console;
  { const Console nothing; }
  EXPECT_THAT(console.lines(), testing::ElementsAre(""));
}

TEST(ConsoleOutput, LineBreaksStayInTheEntry) {
  const support::ConsoleLines console;
  Console() << "one\n"
            << "two\n";
  EXPECT_THAT(console.lines(), testing::ElementsAre("one\ntwo\n"));
}

TEST(ConsoleOutput, GoesToStandardErrorWithoutASink) {
  const Torvel::LineSink before = Torvel::setLineSink(nullptr);
  testing::internal::CaptureStderr();
  Console() << "a line";
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "a line\n");
  Torvel::setLineSink(before);
}

TEST(ConsoleOutput, SinkThatWasSetBeforeIsReturned) {
  int calls = 0;
  const Torvel::LineSink before = Torvel::setLineSink([&](const std::string&) { ++calls; });
  const Torvel::LineSink mine = Torvel::setLineSink(before);
  ASSERT_TRUE(mine);
  mine("x");
  EXPECT_EQ(calls, 1);
}

TEST(ConsoleOutput, SinkThatRaisesEndsNothing) {
  const Torvel::LineSink before =
      Torvel::setLineSink([](const std::string&) { throw std::runtime_error("full"); });
  EXPECT_NO_THROW(Console() << "lost");
  Torvel::setLineSink(before);
}

TEST(ConsoleOutput, SinkMayPutAnotherInItsPlace) {
  std::vector<std::string> second;
  const Torvel::LineSink before = Torvel::setLineSink([&](const std::string&) {
    Torvel::setLineSink([&](const std::string& line) { second.push_back(line); });
  });
  Console() << "first";
  Console() << "second";
  Torvel::setLineSink(before);
  EXPECT_THAT(second, testing::ElementsAre("second"));
}

constexpr int threadCount = 4;
constexpr int linesPerThread = 200;

void writeFromThreads() {
  std::vector<std::thread> threads;
  for (int i = 0; i < threadCount; ++i) {
    threads.emplace_back([i] {
      const std::string part(20, static_cast<char>('a' + i));
      for (int line = 0; line < linesPerThread; ++line) {
        Console() << part.c_str() << part.c_str();
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

void expectWholeLines(const std::vector<std::string>& lines) {
  ASSERT_EQ(lines.size(), static_cast<std::size_t>(threadCount * linesPerThread));
  for (const std::string& line : lines) {
    EXPECT_EQ(line, std::string(40, line.empty() ? ' ' : line[0]));
  }
}

TEST(ConsoleOutput, LinesOfThreadsDoNotMixInASink) {
  const support::ConsoleLines console;
  writeFromThreads();
  expectWholeLines(console.lines());
}

TEST(ConsoleOutput, LinesOfThreadsDoNotMixOnStandardError) {
  const Torvel::LineSink before = Torvel::setLineSink(nullptr);
  testing::internal::CaptureStderr();
  writeFromThreads();
  std::istringstream written(testing::internal::GetCapturedStderr());
  Torvel::setLineSink(before);
  std::vector<std::string> lines;
  for (std::string line; std::getline(written, line);) {
    lines.push_back(line);
  }
  expectWholeLines(lines);
}

} // namespace
