// SPDX-License-Identifier: BSD-3-Clause
// The container's database behind a Pointcloud, and the way its failures reach the caller.
#include "platform/client/database.h"

namespace riegl::rdb::embedded {
namespace {

ErrorKind clientKind(container::ErrorKind kind) {
  switch (kind) {
  case container::ErrorKind::wrongUse:
    return ErrorKind::wrongUse;
  case container::ErrorKind::cannotOpen:
    return ErrorKind::cannotOpen;
  case container::ErrorKind::wrongFormat:
    return ErrorKind::wrongFormat;
  case container::ErrorKind::cannotWrite:
    return ErrorKind::cannotWrite;
  case container::ErrorKind::damaged:
    break;
  }
  return ErrorKind::damaged;
}

} // namespace

Database& requireOpen(const std::shared_ptr<Database>& database) {
  if (!database) {
    throw Error(ErrorKind::wrongUse, "no database is open", "expected a call of open before, found none");
  }
  return *database;
}

Error clientError(const container::Error& error) {
  return {clientKind(error.kind()), error.what(), error.details()};
}

} // namespace riegl::rdb::embedded
