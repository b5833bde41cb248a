// SPDX-License-Identifier: BSD-3-Clause
// The exception by which every operation of the database client reports a failure.
#pragma once

#include "platform/client/api.h"

#include <exception>
#include <memory>
#include <string>

namespace riegl::rdb {

/// What kind of failure an Error reports.
enum class ErrorKind : int {
  wrongUse = 1,    ///< the caller asked for something that is not offered
  cannotOpen = 2,  ///< the file is missing, unreadable or not a regular file
  wrongFormat = 3, ///< the file is no database of this kind, or its catalogue contradicts itself
  damaged = 4,     ///< a block or an item is missing, has another size or fails its checksum
  cannotWrite = 5  ///< a database cannot be made at the given place
};

/// A failure of the client. `what()` says what happened; `details()` names the object, what was expected and what was
/// found. Copies share their texts, so copying never throws. Both texts live as long as any copy and are never null.
/// Callers depend on the order of the virtual operations: destructors, what, code, details.
class RDB_API Error : public std::exception {
 public:
  /// Keeps copies of both texts.
  Error(ErrorKind kind, const std::string& what, const std::string& details);
  Error(const Error&) noexcept;
  Error& operator=(const Error&) noexcept;
  ~Error() override;

  const char* what() const noexcept override;
  /// The number of the ErrorKind.
  virtual int code() const noexcept;
  /// "object: expected ..., found ...", and what to do about it if that is known.
  virtual const char* details() const noexcept;

 private:
  struct Texts;
  std::shared_ptr<const Texts> texts;
};

} // namespace riegl::rdb
