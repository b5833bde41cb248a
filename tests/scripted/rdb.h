// SPDX-License-Identifier: BSD-3-Clause
// A database client without a database: it answers from a script, records every call, and raises at call k.
// It has the operations of `riegl::rdb` that the library uses and no others, so that nothing else can creep in.
#pragma once

#include "tests/scripted/script.h"

#include <cstring>
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

namespace scriptedClient {

/// Logs the end of an object when its last copy goes.
class Lifetime {
 public:
  explicit Lifetime(std::string objectName) : name(std::move(objectName)) {
    ++scripted::script().liveObjects;
  }
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;
  ~Lifetime() {
    --scripted::script().liveObjects;
    scripted::script().calls.push_back("~" + name);
    if (scripted::script().atEnd) {
      scripted::script().atEnd(name);
    }
  }

 private:
  std::string name;
};

using Token = std::shared_ptr<Lifetime>;

inline Token begin(const std::string& name) {
  return std::make_shared<Lifetime>(name);
}

} // namespace scriptedClient

class Context {
 public:
  Context(const std::string& first, const std::string& second) {
    scripted::script().enter("Context(" + first + "," + second + ")");
    token = scriptedClient::begin("Context");
  }

 private:
  scriptedClient::Token token;
};

namespace pointcloud {

enum class DataType : unsigned int { NONE = 0, FLOAT64 = 10 };

class OpenSettings {
 public:
  OpenSettings() {
    scripted::script().enter("OpenSettings()");
    token = scriptedClient::begin("OpenSettings");
  }

 private:
  scriptedClient::Token token;
};

class MetaData {
 public:
  bool exists(const std::string& name) const {
    scripted::script().enter("MetaData::exists(" + name + ")");
    return scripted::script().metadata.count(name) != 0;
  }
  std::string get(const std::string& name, const std::string& fallback) const {
    scripted::script().enter("MetaData::get(" + name + "," + fallback + ")");
    const auto found = scripted::script().metadata.find(name);
    return found == scripted::script().metadata.end() ? fallback : found->second;
  }
};

class PointAttributes {
 public:
  bool exists(const std::string& name) const {
    scripted::script().enter("exists(" + name + ")");
    return scripted::script().columns.count(name) != 0;
  }
};

class QuerySelect {
 public:
  void bind(const std::string& name, DataType type, void* buffer, int stride) {
    scripted::Script& script = scripted::script();
    script.enter("bind(" + name + "," + std::to_string(static_cast<unsigned int>(type)) + "," +
                 std::to_string(stride) + ")");
    if (script.columns.count(name) == 0) {
      throw Error("attribute not found", name);
    }
    state->buffers[name] = buffer;
  }
  unsigned int next(unsigned int count) {
    scripted::Script& script = scripted::script();
    script.enter("next(" + std::to_string(count) + ")");
    if (state->block == script.blocks.size()) {
      return 0;
    }
    const unsigned int records = script.blocks[state->block++];
    for (const auto& [name, buffer] : state->buffers) {
      if (const scripted::Fill& fill = script.columns.at(name)) {
        fill(buffer, records, state->position);
      }
    }
    state->position += records;
    return records;
  }

 private:
  struct State {
    scriptedClient::Token token = scriptedClient::begin("QuerySelect");
    std::map<std::string, void*> buffers;
    std::size_t block = 0;
    std::uint64_t position = 0;
  };
  std::shared_ptr<State> state = std::make_shared<State>();
};

} // namespace pointcloud

class Pointcloud {
 public:
  explicit Pointcloud(Context shared) : context(std::move(shared)) {
    scripted::script().enter("Pointcloud()");
    token = scriptedClient::begin("Pointcloud");
  }
  Pointcloud(const Pointcloud&) = delete;
  Pointcloud& operator=(const Pointcloud&) = delete;

  void open(const std::string& path, const pointcloud::OpenSettings&) {
    scripted::script().enter("open(" + path + ")");
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
    return pointcloud::QuerySelect();
  }

 private:
  Context context;
  scriptedClient::Token token;
  pointcloud::MetaData items;
  mutable pointcloud::PointAttributes attributes;
};

} // namespace riegl::rdb
