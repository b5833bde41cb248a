// SPDX-License-Identifier: BSD-3-Clause
// The six columns of a trajectory load: made and bound before every block, published after it.
#pragma once

#include <rdb2nimbra/client.h>

#include "loader/columns/column_buffer.h"

#include <string>

namespace Riegl {

/// The buffers of the current block, shared references that start null. Element i of all six is one record.
struct TrajectoryColumns {
  Torvel::StrongPtr<Z4Data<double>, Z4Data<double>> pathLength; ///< m
  Torvel::StrongPtr<Z4Data<Quillon::PhysicalSpace::point>, Z4Data<Quillon::PhysicalSpace::point>>
      positions;                                           ///< in the target coordinate system once converted
  Torvel::StrongPtr<Z4Data<double>, Z4Data<double>> yaw;   ///< degrees
  Torvel::StrongPtr<Z4Data<double>, Z4Data<double>> pitch; ///< degrees
  Torvel::StrongPtr<Z4Data<double>, Z4Data<double>> roll;  ///< degrees
  Torvel::StrongPtr<Z4Data<double>, Z4Data<double>> gpsTime; ///< s, on the time base of the database
};

/// Makes a fresh buffer of 5000000 elements for each column, with its field, and binds all but the positions.
/// It asks for all eight attributes first: if the database lacks one, the grid is not touched.
///
/// \param columns  receives the fresh buffers; the buffers of the last block are released
/// \param query    the client writes to the buffers until the next call
/// \return empty, or the text of the first missing attribute
/// \errors  exceptions of the client; std::bad_alloc
std::string iniMe(riegl::rdb::Pointcloud& database, TrajectoryColumns& columns,
                  riegl::rdb::pointcloud::QuerySelect& query, Nimbra::Grid& grid);

/// Hands the block of every column over to its field, in the order "GPSTime", "Roll", "Pitch", "Yaw",
/// "Positions", "PofPathLength". Null references are skipped.
///
/// \param fragment  identity of the block, shared by all columns
/// \param count     records of the block
/// \param isUTC     the time system of the database
/// \param callback  called for each column before the hand-over; may be empty
/// \errors  exceptions of the callback and the data model; the columns before it are on the grid
void publishColumns(TrajectoryColumns& columns,
                    const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment,
                    unsigned int count, const bool& isUTC, const ChunkCallback& callback);

} // namespace Riegl
