// SPDX-License-Identifier: BSD-3-Clause
// Names the element types that a trajectory needs when the library is loaded; the point cloud has entered them before.
#include "arrays/nimbra/registration.h"

namespace Riegl {

namespace {

/// Keeps this import complete on its own: it would work without the point cloud's.
[[maybe_unused]] const bool elementTypesEntered = [] {
  Nimbra::registerElementTypes(std::type_identity<std::tuple<double, Quillon::PhysicalSpace::point>>{});
  return true;
}();

} // namespace

} // namespace Riegl
