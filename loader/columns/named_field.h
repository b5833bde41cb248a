// SPDX-License-Identifier: BSD-3-Clause
// The slot of a field by its name in a representation.
#pragma once

#include "model/nimbra/grid.h"

#include <string>

namespace Riegl {

/// Makes the field of that name in a representation over a fragment collection of its own and without data,
/// or finds the one there is.
inline Nimbra::FieldProxy makeNamedField(Nimbra::Representation& representation, const std::string& name) {
  return representation.makeField(representation.makeFieldID(name), nullptr, nullptr);
}

} // namespace Riegl
