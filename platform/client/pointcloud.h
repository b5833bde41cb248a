// SPDX-License-Identifier: BSD-3-Clause
// An open database.
#pragma once

#include "platform/client/api.h"
#include "platform/client/context.h"
#include "platform/client/meta_data.h"
#include "platform/client/open_settings.h"
#include "platform/client/point_attributes.h"
#include "platform/client/query_select.h"

#include <cstdint>
#include <memory>
#include <string>

namespace riegl::rdb {

/// One database file, opened read-only. Not copied.
/// \errors  riegl::rdb::Error from every operation
/// \threads one thread at a time
class RDB_API Pointcloud {
 public:
  explicit Pointcloud(Context context);
  Pointcloud(const Pointcloud&) = delete;
  Pointcloud& operator=(const Pointcloud&) = delete;
  ~Pointcloud();

  /// Opens the file at `path` (UTF-8) and checks its catalogue; closes a database that was open. If it fails, the
  /// Pointcloud stays as it was.
  void open(const std::string& path, const pointcloud::OpenSettings& settings);

  /// The metadata of the database; the object lives as long as the Pointcloud.
  pointcloud::MetaData& metaData();
  const pointcloud::MetaData& metaData() const;
  /// The attributes of the database; the object lives as long as the Pointcloud.
  pointcloud::PointAttributes& pointAttribute() const;

  /// A query positioned before the first record. Filters are not offered: a filter that is not empty is an Error.
  pointcloud::QuerySelect select(const std::string& filter = {});

  /// Records of the database.
  std::uint64_t recordCount() const;
  /// Records per block of the file; the last block holds the rest.
  std::uint64_t blockRows() const;

 private:
  struct State;
  std::unique_ptr<State> state;
};

} // namespace riegl::rdb
