// SPDX-License-Identifier: BSD-3-Clause
// Releases the pages behind the last element of a chunk where the data model has an operation for it.
#pragma once

#include "model/torvel/references/chunk.h"

namespace Riegl {

/// Whether the data model has `Torvel::releaseUnusedPages`. A model without it keeps the pages of a short
/// block, and loads the same values. The name is looked up by the type of the chunk, so it need not exist.
template <class T>
inline constexpr bool canReleaseUnusedPages = requires(Torvel::Chunk<T>& chunk) {
  releaseUnusedPages(chunk);
};

/// Releases the whole pages between the last element and the end of the storage; capacity and addresses stay.
/// \threads safe on distinct chunks
template <class T>
void releaseUnusedPagesOf(Torvel::Chunk<T>& chunk) {
  if constexpr (canReleaseUnusedPages<T>) {
    releaseUnusedPages(chunk);
  }
}

} // namespace Riegl
