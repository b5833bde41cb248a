// SPDX-License-Identifier: BSD-3-Clause
// The columns of a point-cloud load: one slot a row, bound before every block and published after it.
// The rows: loader/pointcloud/rdbx_rows.h
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

/// A row's buffer of the current block, in the row's element type; empty where the row isn't loaded.
using RdbxSlot =
    std::variant<std::monostate, BufferReference<Quillon::PhysicalSpace::point>,
                 BufferReference<Quillon::PhysicalSpace::vector>, BufferReference<Quillon::ColourRGBA>,
                 BufferReference<double>, BufferReference<float>, BufferReference<short>,
                 BufferReference<unsigned short>, BufferReference<int>, BufferReference<unsigned int>,
                 BufferReference<unsigned long long>, BufferReference<unsigned char>>;

/// The record of columns of a load. All slots start empty; one that was filled once is filled for every block.
struct RdbxColumns {
  std::array<RdbxSlot, rdbxRowCount> slots;

  /// Whether the row is loaded.
  bool filled(std::size_t row) const { return !std::holds_alternative<std::monostate>(slots[row]); }
  /// The buffer of the field "Positions" of the chart, which is always there once columns are bound.
  const BufferReference<Quillon::PhysicalSpace::point>& positions() const {
    return std::get<BufferReference<Quillon::PhysicalSpace::point>>(slots[positionsRow]);
  }
};

/// Makes and binds a fresh buffer for every column that the database holds, in the order of the rows. Making
/// a buffer makes its field.
///
/// \param database                open; its catalogue is asked anew for each row
/// \param columns                 take the fresh buffers; the ones of the last block are dropped
/// \param query                   the client writes to the buffers until the next call
/// \param grid                    receives the fields
/// \param loadAllAttributes       also the rows that are only loaded on request
/// \param readWaveformAttributes  afterwards hang the waveform attributes on "Positions"
/// \returns empty, or the text of what is wrong with the waveform attributes
/// \errors  what the client raises; std::bad_alloc. Buffers and fields made before stay.
std::string bindRdbxColumns(riegl::rdb::Pointcloud& database, RdbxColumns& columns,
                            riegl::rdb::pointcloud::QuerySelect& query, Nimbra::Grid& grid,
                            const bool& loadAllAttributes, const bool& readWaveformAttributes);

/// Hands the block in every filled slot over to its field, in the order of the rows.
///
/// \param fragment  identity of the block, shared by all columns
/// \param count     records of the block
/// \param isUTC     the time system of the database
/// \param callback  called for each column before the hand-over; may be empty
/// \errors  what the callback and the data model raise; the columns before it are on the grid
void publishRdbxColumns(RdbxColumns& columns,
                        const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment,
                        unsigned int count, const bool& isUTC, const ChunkCallback& callback);

} // namespace Riegl
