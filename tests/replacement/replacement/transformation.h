// SPDX-License-Identifier: BSD-3-Clause
// The header of the replacement transformation.
#pragma once

#include "arrays/quillon/physical_space.h"

#include <string>
#include <vector>

namespace Proj {
std::string transform(const std::string& from, const std::string& to,
                      std::vector<Quillon::PhysicalSpace::point>& points, bool reserved);
} // namespace Proj
