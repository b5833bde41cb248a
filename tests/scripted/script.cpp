// SPDX-License-Identifier: BSD-3-Clause
// Keeps the script of a thread and raises at the call that it names.
#include "tests/scripted/script.h"

#include "tests/scripted/rdb.h"

#include <algorithm>

namespace scripted {

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
