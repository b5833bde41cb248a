// SPDX-License-Identifier: BSD-3-Clause
// Registers the eleven element types in the framework's tables when the library is loaded.
#include "arrays/nimbra/registration.h"

namespace Riegl {

namespace {

/// From here on any module of the process can make arrays of these types, without this library.
[[maybe_unused]] const bool elementTypesEntered = [] {
  Nimbra::registerElementTypes(std::type_identity<Nimbra::ElementTypes>{});
  return true;
}();

} // namespace

} // namespace Riegl
