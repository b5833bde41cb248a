// SPDX-License-Identifier: BSD-3-Clause
// Parts of the scripted client's objects: the log of their destruction, and the database that they read.
#pragma once

#include "tests/scripted/script.h"

#include <memory>
#include <string>
#include <utility>

namespace scripted {

/// Logs the destruction of an object when its last copy is destroyed.
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

/// The content that an open database reads: a kept database, or the script of the thread.
class Opened {
 public:
  Opened() = default;
  explicit Opened(std::shared_ptr<const Database> database) : keptDatabase(std::move(database)) {}

  const Database* operator->() const { return keptDatabase ? keptDatabase.get() : &script(); }

 private:
  std::shared_ptr<const Database> keptDatabase;
};

} // namespace scripted
