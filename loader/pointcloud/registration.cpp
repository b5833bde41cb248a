// SPDX-License-Identifier: BSD-3-Clause
// Enters the eleven element types into the framework's tables when the library is loaded.
#include "arrays/nimbra/registration.h"

namespace Riegl {

namespace {

/// Any module of the process can make arrays of these types from here on, without knowing this library.
[[maybe_unused]] const bool elementTypesEntered = [] {
  Nimbra::registerElementTypes(std::type_identity<Nimbra::ElementTypes>{});
  return true;
}();

} // namespace

} // namespace Riegl
