// SPDX-License-Identifier: BSD-3-Clause
// A client with one selectable flaw, which breaks rules of the interface. Its databases are in memory.
#pragma once

#include "tests/conformance/broken_query.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>

namespace riegl::rdb {

class Context {
 public:
  Context(const std::string& settings, const std::string&) {
    if (broken::has("contextNeedsSettings") && settings.empty()) {
      throw Error("no settings", "context");
    }
  }
};

namespace pointcloud {

class OpenSettings {};

class MetaData {
 public:
  explicit MetaData(const std::shared_ptr<Opened>& read) : opened(read) {}
  bool exists(const std::string& name) const { return opened->contents.items.count(name) != 0; }
  std::string get(const std::string& name, const std::string& fallback) const {
    const auto found = opened->contents.items.find(name);
    if (found == opened->contents.items.end()) {
      if (broken::has("absentItemRaises")) {
        throw Error("no such item", name);
      }
      return fallback;
    }
    if (broken::has("emptyItemIsAbsent") && found->second.empty()) {
      return fallback;
    }
    return broken::has("itemsEndAt64K") ? found->second.substr(0, 65536) : found->second;
  }

 private:
  const std::shared_ptr<Opened>& opened;
};

class PointAttributes {
 public:
  explicit PointAttributes(const std::shared_ptr<Opened>& read) : opened(read) {}
  bool exists(const std::string& name) const {
    if (broken::has("questionStartsAgain")) {
      *opened->lastPosition = 0;
    }
    const auto& columns = opened->contents.columns;
    if (broken::has("beginningOfANameExists")) {
      const auto found = columns.lower_bound(name);
      return found != columns.end() && found->first.rfind(name, 0) == 0;
    }
    return columns.count(name) != 0 && !(broken::has("onlyKnownNamesExist") && name.rfind("riegl.", 0) != 0);
  }

 private:
  const std::shared_ptr<Opened>& opened;
};

} // namespace pointcloud

class Pointcloud {
 public:
  explicit Pointcloud(const Context&) {}
  Pointcloud(const Pointcloud&) = delete;
  Pointcloud& operator=(const Pointcloud&) = delete;
  ~Pointcloud() {
    if (!ownPath.empty()) {
      openPaths().erase(ownPath);
    }
    if (failed && broken::has("endAfterAFailedOpenCrashes")) {
      std::_Exit(3);
    }
  }

  void open(const std::string& path, const pointcloud::OpenSettings&) {
    failed = true;
    refuse(path);
    const auto found = inMemory::databases().find(path);
    if (found != inMemory::databases().end()) {
      opened->contents = found->second;
    } else if (broken::has("missingPathRaisesAnotherException")) {
      throw std::runtime_error("no such database");
    } else if (!broken::has("everyPathOpens") &&
               !(broken::has("everyFileOpens") && std::filesystem::exists(path))) {
      throw Error("the database cannot be opened", path + ": it is none");
    }
    failed = false;
  }
  pointcloud::MetaData& metaData() { return items; }
  const pointcloud::MetaData& metaData() const { return items; }
  pointcloud::PointAttributes& pointAttribute() const { return attributes; }
  pointcloud::QuerySelect select(const std::string&) { return pointcloud::QuerySelect(opened); }

 private:
  struct Paths {
    bool insert(const std::string& path) {
      const std::lock_guard lock(mutex);
      return all.insert(path).second;
    }
    void erase(const std::string& path) {
      const std::lock_guard lock(mutex);
      all.erase(path);
    }

    std::mutex mutex{};
    std::set<std::string> all{};
  };
  static Paths& openPaths() {
    static Paths only;
    return only;
  }
  void refuse(const std::string& path) {
    const bool ascii = std::all_of(path.begin(), path.end(), [](char character) { return character > 0; });
    if (broken::has("onlyAsciiPathsOpen") && !ascii) {
      throw Error("the path is not ASCII", path);
    }
    if (broken::has("filesOpenOnce")) {
      if (!openPaths().insert(path)) {
        throw Error("the file is open", path);
      }
      ownPath = path;
    }
    static const std::thread::id first = std::this_thread::get_id();
    if (broken::has("oneThreadOnly") && std::this_thread::get_id() != first) {
      throw Error("another thread was first", path);
    }
  }

  std::shared_ptr<pointcloud::Opened> opened = std::make_shared<pointcloud::Opened>();
  pointcloud::MetaData items{opened};
  mutable pointcloud::PointAttributes attributes{opened};
  std::string ownPath{};
  bool failed = false;
};

} // namespace riegl::rdb
