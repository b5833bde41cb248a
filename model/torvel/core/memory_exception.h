// SPDX-License-Identifier: BSD-3-Clause
// What the reference scheme raises for an object that isn't there.
#pragma once

#include "model/torvel/core/api.h"

#include <exception>

namespace Torvel {

/// Raised when a counted object is constructed on a null pointer. It carries nothing but its type.
class TORVEL_API MemoryException : public std::exception {
 public:
  ~MemoryException() override;
};

} // namespace Torvel
