// SPDX-License-Identifier: BSD-3-Clause
// The waveform attributes that a shot database adds to the field "Positions".
#pragma once

#include <rdb2nimbra/client.h>

#include "loader/columns/column_buffer.h"

#include <string>

namespace Riegl {

/// Reads the record for full-waveform processing from the database's metadata and sets nine of its members as
/// attributes of the buffer's field.
///
/// \param database   open
/// \param positions  the buffer of "Positions"
/// \return empty; or the reader's text, and no attribute is set
/// \errors  exceptions of the client; std::bad_alloc
std::string setWaveformAttributes(const riegl::rdb::Pointcloud& database,
                                  Z4Data<Quillon::PhysicalSpace::point>& positions);

} // namespace Riegl
