// SPDX-License-Identifier: BSD-3-Clause
// Promises on `bind`: which buffer is filled, and what is refused.
#include "conformance/databases.h"
#include "conformance/promise.h"

#include <list>
#include <utility>

namespace conformance {

namespace {

void bufferBoundLast(Databases& databases) {
  Load load(databases.makePattern(1000));
  std::list<GuardedBuffer<float>> buffers; // all stay, so that their places differ
  for (std::uint64_t position = 0; position < 1000; position += 125) {
    load.bind("riegl.class", buffers.emplace_back(125));
    expectEqual("next(125)", load.query.next(125), 125U);
    buffers.back().expectPattern(position, 125);
  }
  expectEqual("next(125) at the end", load.query.next(125), 0U);
}

void firstBufferIsLeftAlone(Databases& databases) {
  Load load(databases.makePattern(10));
  GuardedBuffer<double> first(10);
  GuardedBuffer<double> second(10);
  load.bind("riegl.class", first);
  load.bind("riegl.class", second);
  expectEqual("next(10)", load.query.next(10), 10U);
  first.expectUntouchedBehind(0);
  second.expectPattern(0, 10);
}

void positionSurvives(Databases& databases) {
  Load load(databases.makePattern(12));
  GuardedBuffer<double> first(4);
  load.bind("riegl.class", first);
  expectEqual("next(4)", load.query.next(4), 4U);
  GuardedBuffer<std::int16_t> second(4);
  load.bind("riegl.class", second);
  load.bind("riegl.class", second);
  expectEqual("next(4) after two further binds", load.query.next(4), 4U);
  second.expectPattern(4, 4);
  GuardedBuffer<double> third(4, 3);
  load.bind("riegl.xyz", third);
  expectEqual("next(4) after a bind of another attribute", load.query.next(4), 4U);
  second.expectPattern(8, 4);
  third.expectPattern(8, 4);
}

void bindAloneWritesNothing(Databases& databases) {
  Load load(databases.makePattern(10));
  GuardedBuffer<double> scalars(10);
  GuardedBuffer<double> vectors(10, 3);
  load.bind("riegl.class", scalars);
  load.bind("riegl.xyz", vectors);
  scalars.expectUntouchedBehind(0);
  vectors.expectUntouchedBehind(0);
}

void nameMayGo(Databases& databases) {
  Load load(databases.makePattern(10));
  GuardedBuffer<double> buffer(10);
  std::string name = "riegl.class";
  load.bind(name, buffer);
  name.replace(0, name.size(), "riegl.other");
  expectEqual("next(10) after the name has changed", load.query.next(10), 10U);
  buffer.expectPattern(0, 10);
}

void absentAttribute(Databases& databases) {
  Load load(databases.makePattern(1));
  GuardedBuffer<double> buffer(1);
  for (const char* const name : {"riegl.absent", "riegl.direction_medium", ""}) {
    expectError("bind of the absent attribute " + text(name), [&] { load.bind(name, buffer); });
  }
}

void otherLength(Databases& databases) {
  constexpr std::uint64_t records = 10;
  Load right(databases.make(
      {records, {patternColumn("riegl.amplitude", records), patternColumn("riegl.xyz", records, 3)}, {}}));
  GuardedBuffer<double> room(records, 3);
  right.bind("riegl.amplitude", room);
  right.bind("riegl.xyz", room);
  const std::vector<std::pair<std::string, unsigned>> wrong{
      {"riegl.amplitude", 2}, {"riegl.timestamp", 3}, {"riegl.xyz", 4}, {"riegl.xyz", 1}};
  for (const auto& [name, length] : wrong) {
    std::string path;
    try {
      path = databases.make({records, {patternColumn(name, records, length)}, {}});
    } catch (const riegl::rdb::Error&) {
      continue; // such a database cannot be made at all
    }
    GuardedBuffer<double> buffer(records, 4);
    expectError("bind of " + name + " stored with " + text(length) + " values per record, or open,", [&] {
      Load load(path);
      load.bind(name, buffer);
    });
    buffer.expectUntouchedBehind(0);
  }
}

} // namespace

std::vector<Promise> bindingPromises() {
  return {
      {"EveryBlockGoesToTheBufferBoundLast",
       "A `bind` of a name takes the place of the one before, also in the middle of a query.",
       "Every column is bound to a fresh buffer after every block.", bufferBoundLast},
      {"SecondBindLeavesTheFirstBufferAlone",
       "After a second `bind` of a name the first buffer is neither written nor read.",
       "The buffer that was bound before is freed by the next `next`.", firstBufferIsLeftAlone},
      {"PositionSurvivesRebinding",
       "A `bind`, to another type or of another attribute too, leaves the position where it is.",
       "All columns are bound anew after every block, on the same query.", positionSurvives},
      {"BindAloneWritesNothing", "`bind` writes nothing; only `next` does.",
       "The pages of a fresh buffer are not touched until a block fills them.", bindAloneWritesNothing},
      {"BindKeepsNoReferenceToTheName", "`bind` needs the name during the call only.",
       "Names are passed as temporary texts.", nameMayGo},
      {"BindOfAnAbsentAttributeRaisesError",
       "`bind` of an attribute that is absent raises `riegl::rdb::Error`.",
       "Colours are bound under the name \"riegl.direction_medium\", without a question whether that exists; "
       "the load "
       "then returns the error's texts.",
       absentAttribute},
      {"BindOfAnotherLengthThanTheNameStandsForRaisesError",
       "`bind` of an attribute whose length is another than the standard one of its name raises "
       "`riegl::rdb::Error`, "
       "unless such a database cannot be made or opened.",
       "A buffer is sized by the name alone; longer records would be written past its end.", otherLength},
  };
}

} // namespace conformance
