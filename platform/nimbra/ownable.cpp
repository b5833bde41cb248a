// Home of the virtual tables of spaces and of what creates arrays.
// Partner: ownable.h
#include "platform/nimbra/ownable.h"

namespace Nimbra {

BaseSpace::~BaseSpace() = default;

CreativeArrayBase::~CreativeArrayBase() = default;

} // namespace Nimbra
