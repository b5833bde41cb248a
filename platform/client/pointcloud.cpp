// SPDX-License-Identifier: BSD-3-Clause
// An open database.
#include "platform/client/pointcloud.h"

#include "platform/client/database.h"

#include <utility>

namespace riegl::rdb {

struct Pointcloud::State {
  Context context;
  std::shared_ptr<embedded::Database> database{};
  pointcloud::MetaData metaData{};
  pointcloud::PointAttributes pointAttribute{};
};

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface takes the handle by value
Pointcloud::Pointcloud(Context context) : state(new State{context}) {}

Pointcloud::~Pointcloud() = default;

void Pointcloud::open(const std::string& path, const pointcloud::OpenSettings& settings) {
  state->database =
      embedded::translated([&] { return std::make_shared<embedded::Database>(path, settings.threadCount); });
  state->metaData.database = state->database;
  state->pointAttribute.database = state->database;
}

pointcloud::MetaData& Pointcloud::metaData() {
  return state->metaData;
}

const pointcloud::MetaData& Pointcloud::metaData() const {
  return state->metaData;
}

pointcloud::PointAttributes& Pointcloud::pointAttribute() const {
  return state->pointAttribute;
}

pointcloud::QuerySelect Pointcloud::select(const std::string& filter) {
  requireOpen(state->database);
  if (!filter.empty()) {
    throw Error(ErrorKind::wrongUse, "filters are not offered",
                "query on " + state->database->path() + ": expected an empty filter, found \"" + filter +
                    "\"");
  }
  return pointcloud::QuerySelect(state->database);
}

std::uint64_t Pointcloud::recordCount() const {
  return requireOpen(state->database).recordCount();
}

std::uint64_t Pointcloud::blockRows() const {
  return requireOpen(state->database).blockRows();
}

} // namespace riegl::rdb
