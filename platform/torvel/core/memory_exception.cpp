// Home of the exception's virtual table, so that every module catches the same type.
// Partner: memory_exception.h
#include "platform/torvel/core/memory_exception.h"

namespace Torvel {

MemoryException::~MemoryException() = default;

} // namespace Torvel
