// SPDX-License-Identifier: BSD-3-Clause
// The filters that make the bytes of a piece easier to compress, and their inverses.
#pragma once

#include <cstddef>
#include <cstdint>

namespace container::codec {

/// What is done to the records of a piece before they are compressed; the numbers are those of the file.
enum class Filter : std::uint8_t {
  none = 0,
  shuffle = 1,         ///< the first bytes of all values, then all second bytes, and so on
  deltaAndShuffle = 2, ///< each value less the same component of the record before, then as `shuffle`
};

/// The records of one piece: `count` records of `length` values of `valueBytes` bytes each, without gaps.
struct RecordShape {
  std::size_t valueBytes = 1; ///< 1, 2, 4 or 8
  std::size_t length = 1;     ///< values per record, at least 1
  std::size_t count = 0;      ///< records, 0 included

  std::size_t values() const { return length * count; }
  std::size_t bytes() const { return values() * valueBytes; }
};

/// Filters the records of one piece.
///
/// Differences are taken on the bit patterns, modulo 2^(8 * valueBytes); the first record is left as it is.
/// \param filter    what to do
/// \param shape     of the records; their product of sizes must not exceed size_t
/// \param records   shape.bytes() bytes, little-endian values, any alignment
/// \param filtered  shape.bytes() bytes that receive the result; must not overlap `records`
/// \errors  none
/// \threads safe on distinct results
void applyFilter(Filter filter, const RecordShape& shape, const std::byte* records, std::byte* filtered);

/// Restores the records of one piece: the inverse of applyFilter.
///
/// \param filtered  shape.bytes() bytes; every content is valid
/// \param records   shape.bytes() bytes that receive the records; must not overlap `filtered`
/// \errors  none
/// \threads safe on distinct results
void removeFilter(Filter filter, const RecordShape& shape, const std::byte* filtered, std::byte* records);

/// Restores `count` records of one piece from record `first` on.
///
/// \param records  `count` records; with Filter::deltaAndShuffle and `first` above 0, the record before stands
///                 directly in front of them, restored
/// \errors  none
/// \threads safe on distinct results
void removeFilter(Filter filter, const RecordShape& shape, const std::byte* filtered, std::size_t first,
                  std::size_t count, std::byte* records);

} // namespace container::codec
