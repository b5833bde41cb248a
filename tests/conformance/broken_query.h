// SPDX-License-Identifier: BSD-3-Clause
// The query of the broken client.
#pragma once

#include "tests/conformance/broken_conversion.h"
#include "tests/conformance/broken_error.h"
#include "tests/support/attribute_length.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace riegl::rdb::pointcloud {

enum class DataType : unsigned int {};

/// What queries know of the open database.
struct Opened {
  inMemory::Database contents{};
  std::shared_ptr<std::uint64_t> lastPosition = std::make_shared<std::uint64_t>(0);
};

class QuerySelect {
 public:
  explicit QuerySelect(const std::shared_ptr<Opened>& opened)
      : state(std::make_shared<State>(opened, opened->contents)) {
    if (broken::has("queriesShareAPosition")) {
      state->position = opened->lastPosition;
    }
    opened->lastPosition = state->position;
  }
  QuerySelect(const QuerySelect& other) : state(other.state) {
    if (broken::has("copiesHaveAPositionOfTheirOwn")) {
      state = std::make_shared<State>(*other.state);
      state->position = std::make_shared<std::uint64_t>(*other.state->position);
    }
  }
  QuerySelect& operator=(const QuerySelect&) = delete;
  ~QuerySelect() = default;

  void bind(const std::string& name, DataType type, void* buffer, int) {
    const auto column = state->contents.columns.find(name);
    if (column == state->contents.columns.end()) {
      if (broken::has("absentBindIsIgnored")) {
        return;
      }
      throw Error("the attribute cannot be bound", "column \"" + name + "\": it is absent");
    }
    if (!support::lengthFits(name, column->second.length) && !broken::has("lengthsAreNotChecked")) {
      throw Error("the attribute cannot be bound", "column \"" + name + "\": another length");
    }
    place(Target{name, &name, &column->second, buffer, static_cast<unsigned>(type)});
  }

  unsigned int next(unsigned int count) {
    State& query = *state;
    if (broken::has("emptyDatabaseRaises") && query.contents.records == 0) {
      throw Error("no records", "query");
    }
    if (broken::has("endsWithoutBuffers") && query.targets.empty()) {
      return 0;
    }
    const std::uint64_t records = recordsOfNext(count);
    for (Target& target : query.targets) {
      fill(target, records, count);
    }
    *query.position += records;
    if (records == 0 && broken::has("startsAgainBehindTheEnd")) {
      *query.position = 0;
    }
    return static_cast<unsigned int>(records);
  }

 private:
  struct Target {
    std::string name;
    const std::string* givenName = nullptr;
    const inMemory::Column* column = nullptr;
    void* buffer = nullptr;
    unsigned type = 0;
    std::uint64_t written = 0;
  };

  struct State {
    State(const std::shared_ptr<Opened>& opened, const inMemory::Database& read)
        : database(opened), contents(read) {}
    State(const State&) = default;
    State& operator=(const State&) = delete;
    ~State() {
      const bool inTheMiddle = *position > 0 && *position < contents.records;
      if ((broken::has("endInTheMiddleCrashes") && inTheMiddle) ||
          (broken::has("queryNeedsItsDatabase") && database.expired())) {
        std::_Exit(3);
      }
      for (const Target& target : targets) {
        if (broken::has("endClearsBuffers")) {
          std::memset(target.buffer, 0, 8);
        }
      }
    }

    std::weak_ptr<Opened> database;
    inMemory::Database contents;
    std::vector<Target> targets{};
    std::shared_ptr<std::uint64_t> position = std::make_shared<std::uint64_t>(0);
    unsigned lastAsked = 0;
  };

  void place(const Target& target) {
    if (broken::has("float32IsRefused") && target.type == 9) {
      throw Error("no such type", target.name);
    }
    if (broken::has("bindStartsAgain")) {
      *state->position = 0;
    }
    if (broken::has("bindIsKilled")) {
      std::raise(SIGKILL);
    }
    if (broken::has("bindWrites")) {
      std::memset(target.buffer, 0, 1);
    }
    const auto bound = std::find_if(state->targets.begin(), state->targets.end(),
                                    [&](const Target& other) { return other.name == target.name; });
    if (bound == state->targets.end() || broken::has("firstBufferIsWrittenToo")) {
      if (broken::has("columnsEndAt64") && state->targets.size() == 64) {
        throw Error("too many columns", target.name);
      }
      state->targets.push_back(target);
    } else if (!broken::has("firstBindStays")) {
      *bound = target;
    }
  }

  std::uint64_t recordsOfNext(unsigned count) {
    const std::uint64_t left = state->contents.records - *state->position;
    std::uint64_t records = std::min<std::uint64_t>(count, left);
    if (broken::has("countIsIgnored")) {
      records = left;
    }
    if (broken::has("halfOfTheCountIsRead")) {
      records = std::min<std::uint64_t>((count + 1) / 2, left);
    }
    if (broken::has("singleLastRecordIsLost") && left == 1 && state->contents.records > 1) {
      records = 0;
    }
    const bool fullBlockBefore = left == 0 && state->lastAsked == count && count > 0;
    if (broken::has("fullBlockIsReadAgain") && fullBlockBefore && state->contents.records % count == 0) {
      *state->position -= count;
      records = count;
    }
    state->lastAsked = records == count ? count : 0;
    return records;
  }

  void fill(Target& target, std::uint64_t records, unsigned count) {
    if (broken::has("nameIsReadByNext") && *target.givenName != target.name) {
      return;
    }
    const std::size_t recordBytes = support::elementBytes(target.type) * target.column->length;
    auto* const start = static_cast<unsigned char*>(target.buffer);
    const std::uint64_t offset = broken::has("boundBufferIsContinued") ? target.written : 0;
    broken::writeRecords(*target.column, *state->position, records, start + offset * recordBytes,
                         target.type);
    target.written += records;
    if (broken::has("shortBlocksAreFilledUp") && records > 0 && records < count) {
      std::memset(start + records * recordBytes, 0, (count - records) * recordBytes);
    }
    if (broken::has("oneByteTooMuch") && records > 0) {
      start[records * recordBytes] = 0;
    }
    if (broken::has("endWrites") && records == 0) {
      start[0] = 0;
    }
  }

  std::shared_ptr<State> state;
};

} // namespace riegl::rdb::pointcloud
