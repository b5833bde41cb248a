// SPDX-License-Identifier: BSD-3-Clause
// Conversion of stored values into the element type that a caller asks for. Internal to this room.
#pragma once

#include "container/format/stored_type.h"
#include "platform/client/data_type.h"

#include <cstddef>

namespace riegl::rdb::embedded {

/// Converts `count` tightly packed values: stored x scale + offset; to integers it rounds half to even,
/// saturates, and makes not-a-number 0. Any alignment on both sides; the two areas do not overlap.
using Conversion = void (*)(const unsigned char* from, unsigned char* to, std::size_t count, double scale,
                            double offset);

/// The conversion between two types; null for a DataType that names none.
/// \param asIs  scale 1 and offset 0: integers keep every bit that the target can hold
Conversion conversionFor(StoredType from, pointcloud::DataType to, bool asIs);

} // namespace riegl::rdb::embedded
