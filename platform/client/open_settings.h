// SPDX-License-Identifier: BSD-3-Clause
// Options of opening a database.
#pragma once

#include "platform/client/api.h"

namespace riegl::rdb::pointcloud {

/// Options of Pointcloud::open; the defaults suit every caller.
class RDB_API OpenSettings {
 public:
  OpenSettings();
  OpenSettings(const OpenSettings&);
  OpenSettings& operator=(const OpenSettings&);
  ~OpenSettings();

  /// How many threads `next` may read with, the calling one included. 0 takes two, or one where the thread that opens
  /// may run on a single processor only; 1 starts no thread. The result never depends on it.
  unsigned int threadCount = 0;
};

} // namespace riegl::rdb::pointcloud
