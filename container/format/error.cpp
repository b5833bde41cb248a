// SPDX-License-Identifier: BSD-3-Clause
// The exception of the container.
#include "container/format/error.h"

namespace container {

struct Error::Texts {
  ErrorKind kind;
  std::string what;
  std::string details;
};

Error::Error(ErrorKind kind, const std::string& what, const std::string& details)
    : texts(std::make_shared<const Texts>(Texts{kind, what, details})) {}

Error::Error(const Error&) noexcept = default;

Error& Error::operator=(const Error&) noexcept = default;

Error::~Error() = default;

const char* Error::what() const noexcept {
  return texts->what.c_str();
}

ErrorKind Error::kind() const noexcept {
  return texts->kind;
}

const char* Error::details() const noexcept {
  return texts->details.c_str();
}

} // namespace container
