// SPDX-License-Identifier: BSD-3-Clause
// Keeps the script of a thread and raises at the call that it names.
#include "tests/scripted/script.h"

#include "tests/scripted/rdb.h"

#include <algorithm>
#include <mutex>

namespace scripted {

namespace {

struct Shelf {
  std::mutex mutex{};
  std::map<std::string, std::shared_ptr<const Database>> databases{};
};

Shelf& shelf() {
  static Shelf only;
  return only;
}

} // namespace

void keep(const std::string& path, Database database) {
  const std::lock_guard lock(shelf().mutex);
  shelf().databases[path] = std::make_shared<const Database>(std::move(database));
}

std::shared_ptr<const Database> kept(const std::string& path) {
  const std::lock_guard lock(shelf().mutex);
  const auto found = shelf().databases.find(path);
  return found != shelf().databases.end() ? found->second : nullptr;
}

bool anyKept() {
  const std::lock_guard lock(shelf().mutex);
  return !shelf().databases.empty();
}

Fill filledWith(double value, unsigned int valuesPerRecord) {
  return [value, valuesPerRecord](void* buffer, unsigned int count, std::uint64_t) {
    std::fill_n(static_cast<double*>(buffer), std::size_t{valuesPerRecord} * count, value);
  };
}

void Script::enter(const std::string& call) {
  calls.push_back(call);
  ++raisingCalls;
  if (raiseAt == 0 || raisingCalls < raiseAt || (raisingCalls > raiseAt && !raiseForEver)) {
    return;
  }
  if (raised == Raised::clientError) {
    throw riegl::rdb::Error("scripted failure", "call " + std::to_string(raisingCalls));
  }
  throw std::runtime_error("scripted exception");
}

std::vector<std::string> Script::callsThatBegin(const std::string& prefix) const {
  std::vector<std::string> found;
  for (const std::string& call : calls) {
    if (call.rfind(prefix, 0) == 0) {
      found.push_back(call);
    }
  }
  return found;
}

Script& script() {
  thread_local Script current;
  return current;
}

Script& newScript() {
  return script() = Script();
}

} // namespace scripted
