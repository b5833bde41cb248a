// SPDX-License-Identifier: BSD-3-Clause
// Loads a platform trajectory onto a grid. docs/architecture.md tells the life of one block.
#pragma once

#include <rdb2nimbra/export.h>

#include "loader/timebase/chunk_callback.h"
#include "model/nimbra/grid.h"
#include "model/torvel/objects/interface.h"

#include <string>

namespace Riegl {

/// Loads a trajectory database (`.pofx`) onto a grid: the fields "GPSTime", "Roll", "Pitch", "Yaw",
/// "Positions" and "PofPathLength" in the grid's default place, one fragment a block of 5000000 records,
/// named after the file. Attitudes and path lengths stand as the database has them; positions are converted
/// to the coordinate system of the EPSG code.
///
/// \param path            of the database, UTF-8; its stem begins the names of the fragments
/// \param grid            receives fields, fragments and attributes; it is never cleared, and what a failed
///                        load has put there stays. The caller must not use it meanwhile.
/// \param epsgCode        target coordinate system; a code that the projection data don't know fails with
///                        the first block
/// \param columnCallback  called for each column and block before it goes to the grid; may be empty. This is
///                        where a host rebases "GPSTime": the load itself changes no time stamp. What it
///                        raises ends the load.
/// \param leverArmFile    text file with lever arm and misalignment (loader/trajectory/lever_arm.h), read once the
///                        database is closed; empty for none
/// \param progress        read nowhere
/// \returns empty on success, else a message for the user
/// \errors  std::invalid_argument or std::out_of_range "stod" for a number in the lever-arm file that is
///          none; the columns are on the grid all the same. Failures of the client, of memory and of the
///          callback become the result.
/// \threads runs on the caller's thread; loads on distinct grids may run side by side. Sets the environment
///          variable PROJ_LIB to the folder of the running program.
RDB2NIMBRA_EXPORT std::string
pofx2nimbra(const std::string& path, Nimbra::Grid& grid, const int& epsgCode,
            const ChunkCallback& columnCallback, const std::string& leverArmFile,
            const Torvel::StrongPtr<Torvel::LoaderProgress, Torvel::InterfaceBase>& progress);

} // namespace Riegl
