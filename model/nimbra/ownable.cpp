// SPDX-License-Identifier: BSD-3-Clause
// Home of the virtual tables of spaces and of what creates arrays.
#include "model/nimbra/ownable.h"

namespace Nimbra {

BaseSpace::~BaseSpace() = default;

CreativeArrayBase::~CreativeArrayBase() = default;

} // namespace Nimbra
