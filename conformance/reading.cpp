// SPDX-License-Identifier: BSD-3-Clause
// Promises on `next`: how many records it returns and where it writes them.
#include "conformance/databases.h"
#include "conformance/promise.h"

#include <algorithm>
#include <list>

namespace conformance {

namespace {

constexpr unsigned loadBlock = 5'000'000;

void noRecordsEndAtOnce(Databases& databases) {
  Load load(databases.makePattern(0));
  GuardedBuffer<double> buffer(1);
  load.bind("riegl.class", buffer);
  expectEqual("next(5000000)", load.query.next(loadBlock), 0U);
  expectEqual("next(5000000) once more", load.query.next(loadBlock), 0U);
  buffer.expectUntouchedBehind(0);
}

void fullLastBlock(Databases& databases) {
  Load load(databases.make({loadBlock, {patternColumn("riegl.class", loadBlock)}, {}}));
  GuardedBuffer<std::uint8_t> buffer(loadBlock);
  load.bind("riegl.class", buffer);
  expectEqual("next(5000000)", load.query.next(loadBlock), loadBlock);
  buffer.expectPattern(0, loadBlock);
  buffer.expectUntouchedBehind(loadBlock);
  expectEqual("next(5000000) once more", load.query.next(loadBlock), 0U);
}

void lastBlockOfOneRecord(Databases& databases) {
  Load load(databases.make({loadBlock + 1, {patternColumn("riegl.class", loadBlock + 1)}, {}}));
  GuardedBuffer<std::uint8_t> buffer(loadBlock);
  load.bind("riegl.class", buffer);
  expectEqual("next(5000000)", load.query.next(loadBlock), loadBlock);
  buffer.expectPattern(0, loadBlock);
  buffer.refill();
  expectEqual("next(5000000) of the last record", load.query.next(loadBlock), 1U);
  buffer.expectPattern(loadBlock, 1);
  buffer.expectUntouchedBehind(1);
  expectEqual("next(5000000) at the end", load.query.next(loadBlock), 0U);
}

void endStaysTheEnd(Databases& databases) {
  Load load(databases.makePattern(10));
  expectWholePattern(load, "riegl.class", 10, 10);
  GuardedBuffer<double> fresh(10);
  load.bind("riegl.class", fresh);
  for (int i = 0; i < 3; ++i) {
    expectEqual("next(10) behind the last record", load.query.next(10), 0U);
  }
  fresh.expectUntouchedBehind(0);
}

void neverMoreThanAsked(Databases& databases) {
  Load load(databases.makePattern(1000));
  std::uint64_t position = 0;
  std::list<GuardedBuffer<double>> buffers; // all stay, so that their places differ
  for (unsigned asked = 1; position < 1000; asked = asked * 2 + 1) {
    GuardedBuffer<double>& buffer = buffers.emplace_back(asked, 3);
    load.bind("riegl.xyz", buffer);
    const unsigned count = load.query.next(asked);
    expect(count >= 1 && count <= asked, "next(" + text(asked) + "): 1 to " + text(asked), text(count));
    buffer.expectPattern(position, count);
    buffer.expectUntouchedBehind(count);
    position += count;
  }
  expectEqual("records in all", position, 1000U);
}

void asManyAsAsked(Databases& databases) {
  Load load(databases.makePattern(1000));
  for (const unsigned asked : {1U, 124U, 375U, 499U}) {
    expectEqual("next(" + text(asked) + ")", load.query.next(asked), asked);
  }
  expectEqual("next(5) with one record left", load.query.next(5), 1U);
}

void withoutBindCountsOn(Databases& databases) {
  Load load(databases.makePattern(10));
  expectEqual("next(6) without a buffer", load.query.next(6), 6U);
  GuardedBuffer<double> buffer(6);
  load.bind("riegl.class", buffer);
  expectEqual("next(6)", load.query.next(6), 4U);
  buffer.expectPattern(6, 4);
  expectEqual("next(6) at the end", load.query.next(6), 0U);
}

void copiesShareThePosition(Databases& databases) {
  Load load(databases.makePattern(10));
  riegl::rdb::pointcloud::QuerySelect copy = load.query;
  expectEqual("next(7) of the copy", copy.next(7), 7U);
  expectEqual("next(7) of the query", load.query.next(7), 3U);
}

void filledFromItsStart(Databases& databases) {
  Load load(databases.makePattern(7));
  GuardedBuffer<double> buffer(4);
  load.bind("riegl.class", buffer);
  expectEqual("next(4)", load.query.next(4), 4U);
  expectEqual("next(4) once more", load.query.next(4), 3U);
  buffer.expectPattern(4, 3);
  expectEqual("the value behind the block's last record", buffer[3], static_cast<double>(pattern(3, 0)));
  buffer.expectUntouchedBehind(4);
}

template <class T>
void expectNothingBehind(const std::string& path, const std::string& name, unsigned length) {
  Load load(path);
  GuardedBuffer<T> buffer(64, length);
  load.bind(name, buffer);
  expectEqual("next(64)", load.query.next(64), 5U);
  buffer.expectPattern(0, 5);
  buffer.expectUntouchedBehind(5);
}

void nothingBehindTheLastRecord(Databases& databases) {
  const std::string path = databases.makePattern(5);
  const auto expectFor = [&]<class T>(T) {
    expectNothingBehind<T>(path, "riegl.class", 1);
    expectNothingBehind<T>(path, "riegl.xyz", 3);
  };
  expectFor(std::uint8_t{});
  expectFor(std::uint16_t{});
  expectFor(std::int16_t{});
  expectFor(std::uint32_t{});
  expectFor(std::int32_t{});
  expectFor(std::uint64_t{});
  expectFor(float{});
  expectFor(double{});
}

void recordsStayTogether(Databases& databases) {
  Load load(databases.makePattern(50));
  GuardedBuffer<double> points(50, 3);
  GuardedBuffer<std::uint8_t> colours(50, 4);
  load.bind("riegl.xyz", points);
  load.bind("riegl.rgba", colours);
  expectEqual("next(50)", load.query.next(50), 50U);
  points.expectPattern(0, 50);
  colours.expectPattern(0, 50);
}

void manyColumns(Databases& databases) {
  constexpr unsigned columnCount = 70;
  Contents contents{100, {}, {}};
  for (unsigned i = 0; i < columnCount; ++i) {
    contents.columns.push_back(patternColumn("own.column_" + std::to_string(i), 100, 1 + i % 3, i));
  }
  Load load(databases.make(contents));
  for (const unsigned first : {0U, 60U}) {
    std::vector<GuardedBuffer<double>> buffers;
    for (unsigned i = 0; i < columnCount; ++i) {
      buffers.emplace_back(60, 1 + i % 3);
    }
    for (unsigned i = 0; i < columnCount; ++i) {
      load.bind("own.column_" + std::to_string(i), buffers[i]);
    }
    const unsigned count = load.query.next(60);
    expectEqual("next(60) with 70 columns", count, std::min(60U, 100U - first));
    for (unsigned i = 0; i < columnCount; ++i) {
      buffers[i].expectPattern(i + first, count);
      buffers[i].expectUntouchedBehind(count);
    }
  }
}

void twoQueries(Databases& databases) {
  Load load(databases.makePattern(10));
  riegl::rdb::pointcloud::QuerySelect other = load.database.select("");
  GuardedBuffer<double> mine(5);
  GuardedBuffer<double> theirs(5, 3);
  load.bind("riegl.class", mine);
  other.bind("riegl.xyz", dataType<double>(), theirs.data(), 0);
  expectEqual("next(5)", load.query.next(5), 5U);
  theirs.expectUntouchedBehind(0);
  expectEqual("next(4) of the other query", other.next(4), 4U);
  mine.expectPattern(0, 5);
  theirs.expectPattern(0, 4);
  expectEqual("next(5) once more", load.query.next(5), 5U);
  expectEqual("next(5) of the other query", other.next(5), 5U);
  mine.expectPattern(5, 5);
  theirs.expectPattern(4, 5);
}

} // namespace

std::vector<Promise> readingPromises() {
  return {
      {"DatabaseWithoutRecordsEndsAtOnce",
       "`next` of a database without records returns 0 and writes nothing.",
       "Such a load makes its fields and no fragment.", noRecordsEndAtOnce},
      {"FullLastBlockIsFollowedByZero",
       "If the last `next` returns as many records as were asked for, one more returns 0.",
       "The load calls `next` until it returns 0.", fullLastBlock},
      {"LastBlockMayHoldOneRecord", "The last `next` returns the rest, and writes the rest alone.",
       "Each buffer is cut down to what `next` returned.", lastBlockOfOneRecord},
      {"NextBehindTheEndStaysZero",
       "Behind the last record every `next` returns 0 and writes nothing, also into buffers bound since.",
       "The buffers that are bound after the last block are dropped unused; their pages are never touched.",
       endStaysTheEnd},
      {"NextNeverReturnsMoreThanAsked",
       "`next(count)` returns at most `count` and writes at most so many records.",
       "Each buffer has room for `count` records and no more.", neverMoreThanAsked},
      {"NextReturnsAsManyAsAsked", "`next(count)` returns `count` as long as so many records are left.",
       "Every fragment but the last holds 5000000 records.", asManyAsAsked},
      {"QueryWithoutBindCountsOn",
       "`next` without a bound buffer skips records and returns how many; a buffer bound later gets those "
       "that follow.",
       "A database that has none of the wanted attributes is walked to its end.", withoutBindCountsOn},
      {"CopiesOfAQueryShareThePosition", "Copies of a query are the same query.",
       "The query is returned by value; its destruction releases a reference only.", copiesShareThePosition},
      {"BufferBoundOnceIsFilledFromItsStartEachTime",
       "A buffer that stays bound is filled from its start by each `next`.",
       "The geographic columns of a trajectory are bound once and reused for every block.",
       filledFromItsStart},
      {"NothingIsWrittenBehindTheLastRecord",
       "`next` writes the returned records and not a byte before or behind them, for every type and length.",
       "The buffers lie on the heap beside each other.", nothingBehindTheLastRecord},
      {"ColumnsOfOtherLengthsKeepTheirRecordsTogether",
       "The values of one record lie together in their buffer, as many as the attribute has.",
       "Points, vectors and colours are read as sequences of numbers.", recordsStayTogether},
      {"ManyColumnsAreFilledTogether", "70 columns are bound at once, and each is filled by every `next`.",
       "A load binds up to 70 columns.", manyColumns},
      {"TwoQueriesStandSideBySide",
       "Two queries of one database have positions and buffers of their own; each starts at the first "
       "record.",
       "A host may read from the database that it hands to the readers of its metadata.", twoQueries},
  };
}

} // namespace conformance
