// SPDX-License-Identifier: BSD-3-Clause
// The container's database behind a Pointcloud, and the way its failures reach the caller. Internal to the client.
#pragma once

#include "container/format/error.h"
#include "container/read/database.h"
#include "platform/client/error.h"

#include <memory>

namespace riegl::rdb::embedded {

/// The open database that a Pointcloud, its parts and its queries share.
class Database : public container::Database {
 public:
  using container::Database::Database;
};

/// The database. \errors riegl::rdb::Error if none is open
Database& requireOpen(const std::shared_ptr<Database>& database);

/// The client's Error with the kind and the texts of the container's.
Error clientError(const container::Error& error);

/// Calls `action` and returns its result. A failure of the container leaves as the client's Error; every other
/// exception, std::bad_alloc among them, leaves as it is.
template <class Action>
decltype(auto) translated(Action&& action) {
  try {
    return action();
  } catch (const container::Error& error) {
    throw clientError(error);
  }
}

} // namespace riegl::rdb::embedded
