// SPDX-License-Identifier: BSD-3-Clause
// What the scripted client's objects are made of: a record of their end, and the database that they read.
#pragma once

#include "tests/scripted/script.h"

#include <memory>
#include <string>
#include <utility>

namespace scripted {

/// Logs the end of an object when its last copy goes.
class Lifetime {
 public:
  explicit Lifetime(std::string objectName) : name(std::move(objectName)) { ++script().liveObjects; }
  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;
  ~Lifetime() {
    --script().liveObjects;
    script().calls.push_back("~" + name);
    if (script().atEnd) {
      script().atEnd(name);
    }
  }

 private:
  std::string name;
};

using Token = std::shared_ptr<Lifetime>;

inline Token begin(const std::string& name) {
  return std::make_shared<Lifetime>(name);
}

/// What an open database reads: a kept one, or the script of the thread.
class Opened {
 public:
  Opened() = default;
  explicit Opened(std::shared_ptr<const Database> database) : keptDatabase(std::move(database)) {}

  const Database* operator->() const { return keptDatabase ? keptDatabase.get() : &script(); }

 private:
  std::shared_ptr<const Database> keptDatabase;
};

} // namespace scripted
