// SPDX-License-Identifier: BSD-3-Clause
// Home of the exception's virtual table, so that every module catches the same type.
#include "model/torvel/core/memory_exception.h"

namespace Torvel {

MemoryException::~MemoryException() = default;

} // namespace Torvel
