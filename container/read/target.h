// SPDX-License-Identifier: BSD-3-Clause
// The buffer that receives one column, and how records get into it. Internal to the container.
#pragma once

#include "container/read/column.h"
#include "container/read/conversion.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace container {

inline constexpr std::uint64_t noBlock = std::numeric_limits<std::uint64_t>::max();

/// The buffer that receives one column.
struct Target {
  const Column* column = nullptr;
  unsigned char* buffer = nullptr;
  std::size_t recordBytes = 0;      ///< of a record in the buffer, without the gap behind it
  std::size_t stride = 0;           ///< from one record of the buffer to the next
  Conversion conversion = nullptr;  ///< null where the stored bytes are what is asked for
  std::uint64_t verified = noBlock; ///< the block whose checksum an earlier `next` confirmed

  bool isTight() const { return stride == recordBytes; }
  /// Whether the bytes of the buffer are those of the file.
  bool takesStoredBytes() const { return conversion == nullptr && isTight(); }
};

/// Writes `rows` stored records to their place, converted to the target's type.
/// \param to         the first of them in the target's buffer
/// \param converted  memory for records between conversion and a buffer with gaps; grows to what is needed
void deliver(const unsigned char* records, const Target& target, unsigned char* to, std::size_t rows,
             std::vector<unsigned char>& converted);

} // namespace container
