// SPDX-License-Identifier: BSD-3-Clause
// Moves a time column from the seconds of a day onto the seconds of the week.
#pragma once

#include <rdb2nimbra/export.h>

#include "model/torvel/references/chunk_base.h"

#include <string>

namespace Riegl {

/// Shifts a time column in place onto the seconds of the week, and takes 18.0 leap seconds out where it does
/// so and the time system isn't UTC. Only the first and the last value are looked at: both must lie on one
/// day. Stamps of day 1 and later are taken as seconds of the week already; their day must be the one of the
/// epoch.
///
/// \param error      in/out: nothing happens unless it is empty; receives the failure text
/// \param weekDay    of the epoch, 0 is Sunday
/// \param chunk      (n) double, seconds; any other element type is a failure. An empty one is left alone.
/// \param fieldName  only "GPSTime" is touched
/// \param isUTC      the time system of the stamps
/// \errors  texts in `error`, the values then stay as they were; never throws for bad values
/// \threads safe on distinct chunks
RDB2NIMBRA_EXPORT void modifyGPSTime(std::string& error, const int& weekDay,
                                     const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>& chunk,
                                     const std::string& fieldName, const bool& isUTC);

} // namespace Riegl
