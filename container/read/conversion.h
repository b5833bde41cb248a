// SPDX-License-Identifier: BSD-3-Clause
// Conversion of stored values into the element type that a caller asks for. Internal to the container.
#pragma once

#include "container/format/element_type.h"

#include <cstddef>

namespace container {

/// Converts `count` tightly packed values: stored x scale + offset. Conversion to an integer rounds half to even,
/// saturates, and turns not-a-number into 0. Any alignment on both sides; the two areas do not overlap.
using Conversion = void (*)(const unsigned char* from, unsigned char* to, std::size_t count, double scale,
                            double offset);

/// The conversion between two types; never null.
/// \param asIs  scale 1 and offset 0: integers keep every bit that the target can hold
Conversion conversionFor(ElementType from, ElementType to, bool asIs);

} // namespace container
