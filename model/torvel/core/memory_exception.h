// SPDX-License-Identifier: BSD-3-Clause
// The exception of a counted object that is constructed on a null pointer.
#pragma once

#include "model/torvel/core/api.h"

#include <exception>

namespace Torvel {

/// Raised by the constructor of `ReferenceBase` for a null object. It carries nothing but its type.
class TORVEL_API MemoryException : public std::exception {
 public:
  ~MemoryException() override;
};

} // namespace Torvel
