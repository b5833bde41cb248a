// SPDX-License-Identifier: BSD-3-Clause
// A database client whose database is memory: `next` is a memcpy. It leaves a load nothing but the library's share.
// It has the operations of `riegl::rdb` that the library uses and no others.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <string>

namespace inMemory {

/// One column: `recordBytes` bytes a record, exactly as they are asked for.
struct Column {
  const unsigned char* bytes = nullptr;
  std::size_t recordBytes = 0;
};

/// The one database that every path leads to.
struct Database {
  std::map<std::string, Column> columns;
  std::uint64_t records = 0;
};

inline Database& database() {
  static Database one;
  return one;
}

} // namespace inMemory

namespace riegl::rdb {

class __attribute__((visibility("default"))) Error : public std::exception {
 public:
  const char* what() const noexcept override { return "in memory"; }
  virtual int code() const noexcept { return 0; }
  virtual const char* details() const noexcept { return ""; }
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
  bool exists(const std::string&) const { return false; }
  std::string get(const std::string&, const std::string& fallback) const { return fallback; }
};

class PointAttributes {
 public:
  bool exists(const std::string& name) const { return inMemory::database().columns.count(name) != 0; }
};

class QuerySelect {
 public:
  void bind(const std::string& name, DataType, void* buffer, int) { state->buffers[name] = buffer; }
  unsigned int next(unsigned int count) {
    const inMemory::Database& database = inMemory::database();
    const std::uint64_t records = std::min<std::uint64_t>(count, database.records - state->position);
    for (const auto& [name, buffer] : state->buffers) {
      const inMemory::Column& column = database.columns.at(name);
      std::memcpy(buffer, column.bytes + state->position * column.recordBytes, records * column.recordBytes);
    }
    state->position += records;
    return static_cast<unsigned int>(records);
  }

 private:
  struct State {
    std::map<std::string, void*> buffers;
    std::uint64_t position = 0;
  };
  std::shared_ptr<State> state = std::make_shared<State>();
};

} // namespace pointcloud

class Pointcloud {
 public:
  explicit Pointcloud(const Context&) {}
  void open(const std::string&, const pointcloud::OpenSettings&) {}
  pointcloud::MetaData& metaData() { return items; }
  const pointcloud::MetaData& metaData() const { return items; }
  pointcloud::PointAttributes& pointAttribute() const { return attributes; }
  pointcloud::QuerySelect select(const std::string&) { return {}; }

 private:
  pointcloud::MetaData items;
  mutable pointcloud::PointAttributes attributes;
};

} // namespace riegl::rdb
