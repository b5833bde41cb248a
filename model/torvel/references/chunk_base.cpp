// SPDX-License-Identifier: BSD-3-Clause
// Defines the virtual table of chunks and the byte count of the process.
#include "model/torvel/references/chunk_base.h"

namespace Torvel {

std::int64_t ChunkBase::TotalMemsize = 0;

ChunkBase::ChunkBase() : ReferenceBase<ChunkBase>(this) {}
ChunkBase::~ChunkBase() = default;

} // namespace Torvel
