// SPDX-License-Identifier: BSD-3-Clause
// A database client without a database: it answers from a script, records every call, and raises at call k.
// It has the operations of `riegl::rdb` that the library uses and no others: a use of any other does not compile.
#pragma once

#include "tests/scripted/lifetime.h"
#include "tests/scripted/script.h"
#include "tests/support/attribute_length.h"
#include "tests/support/element_conversion.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace riegl::rdb {

class __attribute__((visibility("default"))) Error : public std::exception {
 public:
  Error(const std::string& happened, const std::string& more) : text(happened), further(more) {}
  const char* what() const noexcept override { return text.c_str(); }
  virtual int reserved() const noexcept { return 0; }
  virtual const char* details() const noexcept { return further.c_str(); }

 private:
  std::string text;
  std::string further;
};

class Context {
 public:
  Context(const std::string& first, const std::string& second) {
    scripted::script().enter("Context(" + first + "," + second + ")");
    token = scripted::begin("Context");
  }

 private:
  scripted::Token token;
};

namespace pointcloud {

enum class DataType : unsigned int { NONE = 0, FLOAT64 = 10 };

class OpenSettings {
 public:
  OpenSettings() {
    scripted::script().enter("OpenSettings()");
    token = scripted::begin("OpenSettings");
  }

 private:
  scripted::Token token;
};

class MetaData {
 public:
  explicit MetaData(scripted::Opened opened = {}) : database(std::move(opened)) {}

  bool exists(const std::string& name) const {
    scripted::script().enter("MetaData::exists(" + name + ")");
    return database->metadata.count(name) != 0;
  }
  std::string get(const std::string& name, const std::string& fallback) const {
    scripted::script().enter("MetaData::get(" + name + "," + fallback + ")");
    const auto found = database->metadata.find(name);
    return found == database->metadata.end() ? fallback : found->second;
  }

 private:
  scripted::Opened database;
};

class PointAttributes {
 public:
  explicit PointAttributes(scripted::Opened opened = {}) : database(std::move(opened)) {}

  bool exists(const std::string& name) const {
    scripted::script().enter("exists(" + name + ")");
    return database->has(name);
  }

 private:
  scripted::Opened database;
};

class QuerySelect {
 public:
  explicit QuerySelect(scripted::Opened opened) : state(std::make_shared<State>()) {
    state->database = std::move(opened);
  }

  void bind(const std::string& name, DataType type, void* buffer, int stride) {
    const auto number = static_cast<unsigned int>(type);
    scripted::script().enter("bind(" + name + "," + std::to_string(number) + "," + std::to_string(stride) +
                             ")");
    if (!state->database->has(name)) {
      throw Error("attribute not found", name);
    }
    const auto stored = state->database->storedColumns.find(name);
    if (stored != state->database->storedColumns.end() && !support::lengthFits(name, stored->second.length)) {
      throw Error("attribute of another length", name);
    }
    state->targets[name] = {buffer, number};
  }
  unsigned int next(unsigned int count) {
    scripted::script().enter("next(" + std::to_string(count) + ")");
    const std::vector<unsigned int>& blocks = state->database->blocks;
    if (state->block == blocks.size()) {
      return 0;
    }
    const unsigned int records = std::min(count, blocks[state->block] - state->takenOfBlock);
    for (const auto& [name, target] : state->targets) {
      state->fill(name, target, records);
    }
    state->goOn(records);
    return records;
  }

 private:
  struct Target {
    void* buffer = nullptr;
    unsigned int type = 0;
  };
  struct State {
    scripted::Token token = scripted::begin("QuerySelect");
    scripted::Opened database;
    std::map<std::string, Target> targets;
    std::size_t block = 0;
    unsigned int takenOfBlock = 0;
    std::uint64_t position = 0;

    void fill(const std::string& name, const Target& target, unsigned int records) const {
      const auto stored = database->storedColumns.find(name);
      if (stored != database->storedColumns.end()) {
        const auto& [type, length, values] = stored->second;
        support::convertElements(values.data() + position * length * support::elementBytes(type), type,
                                 target.buffer, target.type, std::size_t{records} * length);
      } else if (const scripted::Fill& filler = database->columns.at(name)) {
        filler(target.buffer, records, position);
      }
    }
    void goOn(unsigned int records) {
      position += records;
      takenOfBlock += records;
      if (takenOfBlock == database->blocks[block]) {
        ++block;
        takenOfBlock = 0;
      }
    }
  };
  std::shared_ptr<State> state;
};

} // namespace pointcloud

class Pointcloud {
 public:
  explicit Pointcloud(Context shared) : context(std::move(shared)) {
    scripted::script().enter("Pointcloud()");
    token = scripted::begin("Pointcloud");
  }
  Pointcloud(const Pointcloud&) = delete;
  Pointcloud& operator=(const Pointcloud&) = delete;

  void open(const std::string& path, const pointcloud::OpenSettings&) {
    scripted::script().enter("open(" + path + ")");
    std::shared_ptr<const scripted::Database> found = scripted::kept(path);
    if (found == nullptr && scripted::anyKept()) {
      throw Error("no such database", path);
    }
    database = scripted::Opened(std::move(found));
    items = pointcloud::MetaData(database);
    attributes = pointcloud::PointAttributes(database);
  }
  pointcloud::MetaData& metaData() {
    scripted::script().enter("metaData()");
    return items;
  }
  const pointcloud::MetaData& metaData() const {
    scripted::script().enter("metaData() const");
    return items;
  }
  pointcloud::PointAttributes& pointAttribute() const {
    scripted::script().enter("pointAttribute()");
    return attributes;
  }
  pointcloud::QuerySelect select(const std::string& filter) {
    scripted::script().enter("select(" + filter + ")");
    return pointcloud::QuerySelect(database);
  }

 private:
  Context context;
  scripted::Token token;
  scripted::Opened database;
  pointcloud::MetaData items;
  mutable pointcloud::PointAttributes attributes;
};

} // namespace riegl::rdb
