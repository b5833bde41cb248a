// SPDX-License-Identifier: BSD-3-Clause
// The read position: which column goes where, and how far the reading is.
#include "container/read/cursor.h"

#include "container/read/open_file.h"
#include "container/read/read_jobs.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace container {

struct Cursor::State {
  std::shared_ptr<OpenFile> file;
  std::uint64_t position = 0;
  std::vector<Target> targets{}; // in the order of the first binds

  void bind(const Column& column, Target target) {
    Target& place = targetFor(column);
    target.verified = place.column == nullptr ? noBlock : place.verified;
    place = target;
  }

  Target& targetFor(const Column& column) {
    const auto found = std::find_if(targets.begin(), targets.end(),
                                    [&](const Target& target) { return target.column == &column; });
    return found != targets.end() ? *found : targets.emplace_back();
  }
};

namespace {

[[noreturn]] void refuseBind(const std::string& name, const std::string& expected, const std::string& found) {
  throw Error(ErrorKind::wrongUse, "the attribute cannot be bound",
              "column \"" + name + "\": expected " + expected + ", found " + found);
}

Target targetOf(const Column& column, ElementType type, bool asStored, void* buffer, int stride) {
  const Attribute& attribute = column.attribute;
  if (buffer == nullptr) {
    refuseBind(attribute.name, "a buffer", "a null pointer");
  }
  Target target;
  target.column = &column;
  target.buffer = static_cast<unsigned char*>(buffer);
  target.recordBytes = attribute.length * byteSize(type);
  if (stride < 0 || (stride != 0 && static_cast<std::size_t>(stride) < target.recordBytes)) {
    refuseBind(attribute.name, "a stride of 0 or at least " + std::to_string(target.recordBytes) + " bytes",
               std::to_string(stride));
  }
  target.stride = stride == 0 ? target.recordBytes : static_cast<std::size_t>(stride);
  if (type != attribute.type || !(asStored || attribute.isStoredAsIs())) {
    target.conversion = conversionFor(attribute.type, type, attribute.isStoredAsIs());
  }
  return target;
}

} // namespace

Cursor::Cursor(const Database& database) : state(new State{database.file}) {}

Cursor::~Cursor() = default;

void Cursor::bind(const std::string& name, ElementType type, void* buffer, int stride) {
  const Column& column = state->file->requireColumn(name);
  state->bind(column, targetOf(column, type, false, buffer, stride));
}

void Cursor::bindStored(const std::string& name, void* buffer, int stride) {
  const Column& column = state->file->requireColumn(name);
  state->bind(column, targetOf(column, column.attribute.type, true, buffer, stride));
}

std::uint64_t Cursor::next(std::uint64_t count) {
  const BlockLayout& layout = state->file->catalogue.layout();
  const std::uint64_t records = std::min(count, layout.records - state->position);
  if (records == 0) {
    return 0;
  }
  if (!state->targets.empty()) {
    runAll(ReadJobs(layout, state->targets, state->position, records), state->file->readers);
  }
  state->position += records;
  for (Target& target : state->targets) {
    target.verified = (state->position - 1) / layout.blockRows;
  }
  return records;
}

} // namespace container
