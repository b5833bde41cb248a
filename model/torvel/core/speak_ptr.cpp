// SPDX-License-Identifier: BSD-3-Clause
// Writes the texts of the five reports, and every line of the process to its sink.
#include "model/torvel/core/speak_ptr.h"

#include "model/torvel/core/typename.h"

#include <cstdio>
#include <locale>
#include <mutex>
#include <sstream>

namespace Torvel {

namespace {

struct Sink {
  // Recursive: a sink may itself release objects whose counts are reported.
  std::recursive_mutex mutex;
  LineSink write;
};

Sink& theSink() {
  // Never destroyed: static objects may report while the process ends.
  static Sink* sink = new Sink;
  return *sink;
}

std::string counts(int strong, int weak) {
  return "strong " + std::to_string(strong) + ", weak " + std::to_string(weak);
}

/// A stream whose numbers do not depend on the locale of the host.
std::ostringstream plainStream() {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  return stream;
}

/// Writes the line that `compose` returns. Reports are made in destructors, so nothing may be raised: a line
/// that can't be written is lost.
template <class Compose>
void report(Compose compose) noexcept {
  try {
    writeLine(compose());
  } catch (...) { // NOLINT(bugprone-empty-catch): see above
  }
}

} // namespace

LineSink setLineSink(LineSink sink) {
  Sink& target = theSink();
  const std::lock_guard lock(target.mutex);
  std::swap(target.write, sink);
  return sink;
}

void writeLine(const std::string& line) {
  Sink& target = theSink();
  const std::lock_guard lock(target.mutex);
  // A copy: a sink may replace itself while it runs.
  if (const LineSink write = target.write; write) {
    write(line);
    return;
  }
  const std::string whole = line + '\n';
  std::fwrite(whole.data(), 1, whole.size(), stderr);
  std::fflush(stderr);
}

SpeakPtr::SpeakPtr() = default;
SpeakPtr::~SpeakPtr() = default;

SpeakPtr& SpeakPtr::theSpeaker() {
  struct Speaker final : SpeakPtr {};
  static Speaker* speaker = new Speaker;
  return *speaker;
}

void SpeakPtr::SelfConstruction(const std::type_info& pointer, const void* self, const void* record) {
  report([&] {
    std::ostringstream line = plainStream();
    line << "reference scheme: " << Typename(pointer) << " at " << self
         << " is constructed from itself (record " << record << ')';
    return line.str();
  });
}

void SpeakPtr::InvalidWeakPtr(const std::type_info& pointer, const std::type_info& base,
                              const std::type_info& object, const std::type_info& family, int strong,
                              int weak, const void* record, const void* live, long long id) {
  report([&] {
    std::ostringstream line = plainStream();
    line << "reference scheme: weak hold of " << Typename(pointer) << " number " << id << " ("
         << Typename(base) << " on " << Typename(object) << " in family " << Typename(family)
         << ") is released, but the weak count isn't positive: " << counts(strong, weak) << ", record "
         << record << ", object " << live;
    return line.str();
  });
}

void SpeakPtr::DynPtrInvalid(const void* record, const void* object, int strong, int weak,
                             const std::type_info& family) {
  report([&] {
    std::ostringstream line = plainStream();
    line << "reference scheme: the last strong hold in family " << Typename(family)
         << " ends on an invalid record: " << counts(strong, weak) << ", record " << record << ", object "
         << object;
    return line.str();
  });
}

void SpeakPtr::DestructionCancelled(int strong, int weak, const std::type_info& family) {
  report([&] {
    return "reference scheme: destruction of an object of family " + Typename(family) +
           " is cancelled, it was taken up again: " + counts(strong, weak);
  });
}

void SpeakPtr::WarningUnctionChange(int strong, int weak, const std::type_info& family) {
  report([&] {
    return "reference scheme: the pre-destruction hook of an object of family " + Typename(family) +
           " changed its strong count: " + counts(strong, weak);
  });
}

} // namespace Torvel
