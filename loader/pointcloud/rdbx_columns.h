// SPDX-License-Identifier: BSD-3-Clause
// The columns of a point-cloud load: one slot per row, bound before every block and published after it.
#pragma once

#include <rdb2nimbra/client.h>

#include "loader/columns/column_buffer.h"
#include "loader/pointcloud/rdbx_rows.h"

#include <array>
#include <string>
#include <variant>

namespace Riegl {

/// Shared reference to a column buffer, or empty.
template <class T>
using BufferReference = Torvel::StrongPtr<Z4Data<T>, Z4Data<T>>;

/// A row's buffer for the current block, in the row's element type; empty if the row is not loaded.
using RdbxSlot =
    std::variant<std::monostate, BufferReference<Quillon::PhysicalSpace::point>,
                 BufferReference<Quillon::PhysicalSpace::vector>, BufferReference<Quillon::ColourRGBA>,
                 BufferReference<double>, BufferReference<float>, BufferReference<short>,
                 BufferReference<unsigned short>, BufferReference<int>, BufferReference<unsigned int>,
                 BufferReference<unsigned long long>, BufferReference<unsigned char>>;

/// The columns of a load. All slots start empty; a slot filled for the first block is filled for every block.
struct RdbxColumns {
  std::array<RdbxSlot, rdbxRowCount> slots;

  /// Whether the row is loaded.
  bool filled(std::size_t row) const { return !std::holds_alternative<std::monostate>(slots[row]); }
  /// The buffer of the field "Positions" of the chart. It exists once columns are bound.
  const BufferReference<Quillon::PhysicalSpace::point>& positions() const {
    return std::get<BufferReference<Quillon::PhysicalSpace::point>>(slots[positionsRow]);
  }
};

/// Makes and binds a fresh buffer for every column that the database has, in the order of the rows. A new
/// buffer creates its field.
///
/// \param database                open; its catalogue is asked anew for each row
/// \param columns                 receives the fresh buffers; the buffers of the last block are released
/// \param query                   the client writes to the buffers until the next call
/// \param grid                    receives the fields
/// \param loadAllAttributes       also binds the rows marked `onlyWithAll`
/// \param readWaveformAttributes  then sets the waveform attributes of "Positions"
/// \return empty, or the text of the failure to read the waveform attributes
/// \errors  exceptions of the client; std::bad_alloc. Buffers and fields made before stay.
std::string bindRdbxColumns(riegl::rdb::Pointcloud& database, RdbxColumns& columns,
                            riegl::rdb::pointcloud::QuerySelect& query, Nimbra::Grid& grid,
                            const bool& loadAllAttributes, const bool& readWaveformAttributes);

/// Hands the block of every filled slot over to its field, in the order of the rows.
///
/// \param fragment  identity of the block, shared by all columns
/// \param count     records of the block
/// \param isUTC     the time system of the database
/// \param callback  called for each column before the hand-over; may be empty
/// \errors  exceptions of the callback and the data model; the columns before it are on the grid
void publishRdbxColumns(RdbxColumns& columns,
                        const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment,
                        unsigned int count, const bool& isUTC, const ChunkCallback& callback);

} // namespace Riegl
