// SPDX-License-Identifier: BSD-3-Clause
// Registers the element types of a trajectory when the library is loaded.
#include "arrays/nimbra/registration.h"

namespace Riegl {

namespace {

/// The point cloud registers the same types; this import does not depend on it.
[[maybe_unused]] const bool elementTypesEntered = [] {
  Nimbra::registerElementTypes(std::type_identity<std::tuple<double, Quillon::PhysicalSpace::point>>{});
  return true;
}();

} // namespace

} // namespace Riegl
