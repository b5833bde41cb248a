// SPDX-License-Identifier: BSD-3-Clause
// The handle that a program makes once and passes to every database it opens.
#pragma once

#include "platform/client/api.h"

#include <memory>
#include <string>

namespace riegl::rdb {

/// Shared handle; a copy only increments a thread-safe count. The embedded client keeps both texts and uses neither:
/// callers usually pass empty ones.
class RDB_API Context {
 public:
  explicit Context(const std::string& settings = {}, const std::string& logging = {});
  Context(const Context&) noexcept;
  Context& operator=(const Context&) noexcept;
  ~Context();

  const std::string& settings() const noexcept;
  const std::string& logging() const noexcept;

 private:
  struct State;
  std::shared_ptr<const State> state;
};

} // namespace riegl::rdb
