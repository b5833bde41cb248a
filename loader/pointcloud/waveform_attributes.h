// SPDX-License-Identifier: BSD-3-Clause
// What a shot database says about its waveforms, hung on the field "Positions".
#pragma once

#include <rdb2nimbra/client.h>

#include "loader/columns/column_buffer.h"

#include <string>

namespace Riegl {

/// Reads the record for full-waveform processing from the database's metadata and sets nine attributes of it
/// on the buffer's field.
///
/// \param database   open
/// \param positions  the buffer of "Positions", whose field lives on the grid
/// \returns empty, or the reader's text; no attribute is set then
/// \errors  what the client raises; std::bad_alloc
std::string setWaveformAttributes(const riegl::rdb::Pointcloud& database,
                                  Z4Data<Quillon::PhysicalSpace::point>& positions);

} // namespace Riegl
