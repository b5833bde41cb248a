// SPDX-License-Identifier: BSD-3-Clause
// Makes a chunk from its values.
#pragma once

#include "model/torvel/references/chunk.h"

#include <algorithm>
#include <vector>

namespace support {

/// A new chunk with these elements.
template <class T>
Torvel::StrongPtr<Torvel::Chunk<T>, Torvel::ChunkBase> chunkWith(const std::vector<T>& elements) {
  Torvel::StrongPtr<Torvel::Chunk<T>, Torvel::ChunkBase> chunk(new Torvel::Chunk<T>(elements.size()));
  std::copy(elements.begin(), elements.end(), chunk->values().begin());
  return chunk;
}

} // namespace support
