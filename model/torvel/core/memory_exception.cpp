// SPDX-License-Identifier: BSD-3-Clause
// Defines the exception's virtual table once, so that every shared object catches the same type.
#include "model/torvel/core/memory_exception.h"

namespace Torvel {

MemoryException::~MemoryException() = default;

} // namespace Torvel
