// SPDX-License-Identifier: BSD-3-Clause
// The read cursor: which attribute goes where, and how far the reading is.
#include "platform/client/query_select.h"

#include "container/read/read_jobs.h"
#include "names/names.h"

#include <algorithm>
#include <utility>

namespace riegl::rdb::pointcloud {

using embedded::Target;

struct QuerySelect::State {
  std::shared_ptr<embedded::Database> database;
  std::uint64_t position = 0;
  std::vector<Target> targets{}; // in the order of the first binds

  Target& targetFor(const embedded::Column& column) {
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

/// A caller's buffer is sized by the attribute's name; what the file says of its length must not exceed that.
void requireStandardLength(const embedded::Column& column, const std::string& path) {
  const Riegl::Attribute* const standard = Riegl::attributes::find(column.attribute.name);
  const unsigned found = column.attribute.length;
  if (standard != nullptr && (found < standard->leastValues || found > standard->mostValues)) {
    throw Error(ErrorKind::wrongFormat, "the attribute has another length than its name stands for",
                "column \"" + column.attribute.name + "\" of " + path + ": expected " +
                    std::to_string(standard->mostValues) + " values a record, found " +
                    std::to_string(found));
  }
}

Target targetOf(const embedded::Column& column, DataType dataType, void* buffer, int stride) {
  const std::string& name = column.attribute.name;
  const auto requested = embedded::storedTypeOf(dataType);
  if (!requested) {
    refuseBind(name, "a data type of 1 to 10", std::to_string(static_cast<std::uint32_t>(dataType)));
  }
  if (buffer == nullptr) {
    refuseBind(name, "a buffer", "a null pointer");
  }
  Target target;
  target.column = &column;
  target.buffer = static_cast<unsigned char*>(buffer);
  target.recordBytes = column.attribute.length * embedded::byteSize(*requested);
  if (stride < 0 || (stride != 0 && static_cast<std::size_t>(stride) < target.recordBytes)) {
    refuseBind(name, "a stride of 0 or at least " + std::to_string(target.recordBytes) + " bytes",
               std::to_string(stride));
  }
  target.stride = stride == 0 ? target.recordBytes : static_cast<std::size_t>(stride);
  if (*requested != column.type || !column.isStoredAsIs()) {
    target.conversion = embedded::conversionFor(column.type, dataType, column.isStoredAsIs());
  }
  return target;
}

} // namespace

QuerySelect::QuerySelect() = default;

QuerySelect::QuerySelect(std::shared_ptr<embedded::Database> database)
    : state(std::make_shared<State>(State{std::move(database)})) {}

QuerySelect::QuerySelect(const QuerySelect&) noexcept = default;

QuerySelect& QuerySelect::operator=(const QuerySelect&) noexcept = default;

QuerySelect::~QuerySelect() = default;

void QuerySelect::bind(const std::string& name, DataType dataType, void* buffer, int stride) {
  const embedded::Database& database = requireOpen(state ? state->database : nullptr);
  const embedded::Column& column = database.requireColumn(name);
  requireStandardLength(column, database.path());
  Target target = targetOf(column, dataType, buffer, stride);
  Target& place = state->targetFor(column);
  target.verified = place.column == nullptr ? embedded::noBlock : place.verified;
  place = target;
}

unsigned int QuerySelect::next(unsigned int count) {
  embedded::Database& database = requireOpen(state ? state->database : nullptr);
  const embedded::BlockLayout& layout = database.layout();
  const std::uint64_t records = std::min<std::uint64_t>(count, layout.records - state->position);
  if (records == 0) {
    return 0;
  }
  if (!state->targets.empty()) {
    runAll(embedded::ReadJobs(layout, state->targets, state->position, records), database);
  }
  state->position += records;
  for (Target& target : state->targets) {
    target.verified = (state->position - 1) / layout.blockRows;
  }
  return static_cast<unsigned int>(records);
}

} // namespace riegl::rdb::pointcloud
