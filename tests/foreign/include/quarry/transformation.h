// SPDX-License-Identifier: BSD-3-Clause
// Conversion of points between coordinate systems.
#pragma once

#include "arrays/quillon/physical_space.h"

#include <string>
#include <vector>

namespace Proj {

/// In place. Points that have no image become infinite. The result has the easting first.
std::string transform(const std::string& from, const std::string& to,
                      std::vector<Quillon::PhysicalSpace::point>& points, bool reserved);

} // namespace Proj
