// SPDX-License-Identifier: BSD-3-Clause
// Makes or finds the field of a name in a representation.
#pragma once

#include "model/nimbra/grid.h"

#include <string>

namespace Riegl {

/// Returns the field of that name. A new field has a fragment collection of its own and no data.
inline Nimbra::FieldProxy makeNamedField(Nimbra::Representation& representation, const std::string& name) {
  return representation.makeField(representation.makeFieldID(name), nullptr, nullptr);
}

} // namespace Riegl
