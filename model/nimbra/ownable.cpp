// SPDX-License-Identifier: BSD-3-Clause
// Defines the virtual tables of spaces and of creators of arrays.
#include "model/nimbra/ownable.h"

namespace Nimbra {

BaseSpace::~BaseSpace() = default;

CreativeArrayBase::~CreativeArrayBase() = default;

} // namespace Nimbra
