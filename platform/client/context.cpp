// SPDX-License-Identifier: BSD-3-Clause
// The shared handle of the database client.
#include "platform/client/context.h"

namespace riegl::rdb {

struct Context::State {
  std::string settings;
  std::string logging;
};

Context::Context(const std::string& settings, const std::string& logging)
    : state(std::make_shared<const State>(State{settings, logging})) {}

Context::Context(const Context&) noexcept = default;

Context& Context::operator=(const Context&) noexcept = default;

Context::~Context() = default;

const std::string& Context::settings() const noexcept {
  return state->settings;
}

const std::string& Context::logging() const noexcept {
  return state->logging;
}

} // namespace riegl::rdb
