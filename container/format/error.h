// SPDX-License-Identifier: BSD-3-Clause
// The exception by which every operation of the container reports a failure.
#pragma once

#include "container/format/api.h"

#include <exception>
#include <memory>
#include <string>

namespace container {

/// What kind of failure an Error reports.
enum class ErrorKind {
  wrongUse,    ///< the caller asked for something that is not offered
  cannotOpen,  ///< the file is missing, unreadable or not a regular file
  wrongFormat, ///< the file is no database, or its catalogue contradicts itself
  damaged,     ///< a block or an item is missing, has another size or fails its checksum
  cannotWrite  ///< a database cannot be made at the given place
};

/// A failure. `what()` says what happened; `details()` names the object, what was expected and what was found.
/// Copies share their texts, so copying never throws. Both texts live as long as any copy and are never null.
class CONTAINER_API Error : public std::exception {
 public:
  /// Keeps copies of both texts.
  Error(ErrorKind kind, const std::string& what, const std::string& details);
  Error(const Error&) noexcept;
  Error& operator=(const Error&) noexcept;
  ~Error() override;

  ErrorKind kind() const noexcept;
  const char* what() const noexcept override;
  /// "object: expected ..., found ...", and what to do about it if that is known.
  const char* details() const noexcept;

 private:
  struct Texts;
  std::shared_ptr<const Texts> texts;
};

} // namespace container
