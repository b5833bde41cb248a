// SPDX-License-Identifier: BSD-3-Clause
// A database client whose databases are in memory: `next` is a memcpy where a column is stored in the type that is asked
// for, so that the time of a load is the library's share. It has the operations of `riegl::rdb` that the library uses and no others.
#pragma once

#include "bench/in_memory/database.h"
#include "tests/support/attribute_length.h"
#include "tests/support/element_conversion.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <string>

namespace riegl::rdb {

class __attribute__((visibility("default"))) Error : public std::exception {
 public:
  Error(const std::string& happened, const std::string& more) : text(happened), further(more) {}
  const char* what() const noexcept override { return text.c_str(); }
  virtual int code() const noexcept { return 0; }
  virtual const char* details() const noexcept { return further.c_str(); }

 private:
  std::string text;
  std::string further;
};

class Context {
 public:
  Context(const std::string&, const std::string&) {}
};

namespace pointcloud {

enum class DataType : unsigned int {};

class OpenSettings {};

class MetaData {
 public:
  explicit MetaData(const inMemory::Database* const* opened) : database(opened) {}
  bool exists(const std::string& name) const { return (*database)->items.count(name) != 0; }
  std::string get(const std::string& name, const std::string& fallback) const {
    const auto found = (*database)->items.find(name);
    return found != (*database)->items.end() ? found->second : fallback;
  }

 private:
  const inMemory::Database* const* database;
};

class PointAttributes {
 public:
  explicit PointAttributes(const inMemory::Database* const* opened) : database(opened) {}
  bool exists(const std::string& name) const { return (*database)->columns.count(name) != 0; }

 private:
  const inMemory::Database* const* database;
};

class QuerySelect {
 public:
  explicit QuerySelect(const inMemory::Database& read) : state(std::make_shared<State>(State{read})) {}

  void bind(const std::string& name, DataType type, void* buffer, int) {
    const auto column = state->database.columns.find(name);
    if (column == state->database.columns.end()) {
      throw Error("the attribute cannot be bound", "column \"" + name + "\": it is absent");
    }
    if (!support::lengthFits(name, column->second.length)) {
      throw Error("the attribute cannot be bound", "column \"" + name + "\": found " +
                                                       std::to_string(column->second.length) +
                                                       " values per record");
    }
    state->targets[name] = {&column->second, buffer, static_cast<unsigned>(type)};
  }

  unsigned int next(unsigned int count) {
    const std::uint64_t records = std::min<std::uint64_t>(count, state->database.records - state->position);
    if (records == 0) {
      return 0;
    }
    for (const auto& [name, target] : state->targets) {
      target.fill(state->position, records);
    }
    state->position += records;
    return static_cast<unsigned int>(records);
  }

 private:
  struct Target {
    const inMemory::Column* column = nullptr;
    void* buffer = nullptr;
    unsigned type = 0;

    void fill(std::uint64_t first, std::uint64_t records) const {
      const std::size_t elementBytes = support::elementBytes(column->type);
      const unsigned char* const from = column->bytes + first * column->length * elementBytes;
      if (type == column->type) {
        std::memcpy(buffer, from, records * column->length * elementBytes);
      } else {
        support::convertElements(from, column->type, buffer, type, records * column->length);
      }
    }
  };
  struct State {
    const inMemory::Database& database;
    std::map<std::string, Target> targets{};
    std::uint64_t position = 0;
  };
  std::shared_ptr<State> state;
};

} // namespace pointcloud

class Pointcloud {
 public:
  explicit Pointcloud(const Context&) {}
  Pointcloud(const Pointcloud&) = delete;
  Pointcloud& operator=(const Pointcloud&) = delete;

  void open(const std::string& path, const pointcloud::OpenSettings&) {
    const auto found = inMemory::databases().find(path);
    if (found == inMemory::databases().end()) {
      throw Error("the database cannot be opened", path + ": expected a path of inMemory::databases()");
    }
    database = &found->second;
  }
  pointcloud::MetaData& metaData() { return items; }
  const pointcloud::MetaData& metaData() const { return items; }
  pointcloud::PointAttributes& pointAttribute() const { return attributes; }
  pointcloud::QuerySelect select(const std::string&) { return pointcloud::QuerySelect(*database); }

 private:
  inMemory::Database none;
  const inMemory::Database* database = &none;
  pointcloud::MetaData items{&database};
  mutable pointcloud::PointAttributes attributes{&database};
};

} // namespace riegl::rdb
