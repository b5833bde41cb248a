// SPDX-License-Identifier: BSD-3-Clause
// Blocks of elements in a vector.
#pragma once

#include "model/torvel/references/typed_chunk.h"

namespace Torvel {

template <class T>
class TORVEL_API Chunk final : public TypedChunk<T>, public std::vector<T> {
 public:
  explicit Chunk(std::size_t count) : std::vector<T>(count) {}

  std::size_t elementCount() const override { return this->size(); }
  std::size_t elementBytes() const override { return sizeof(T); }
  void* data() override { return this->empty() ? nullptr : std::vector<T>::data(); }
  StrongPtr<ChunkBase, ChunkBase> clone() const override {
    StrongPtr<Chunk, ChunkBase> copy(new Chunk(0));
    static_cast<std::vector<T>&>(*copy) = *this;
    return copy;
  }
  std::vector<T>& values() override { return *this; }
};

/// Gives the whole memory pages between two addresses back; both lie in one allocation without live objects.
TORVEL_API void releasePages(void* first, void* last) noexcept;

/// Gives the pages behind the last element back. Addresses and capacity stay.
template <class T>
void releaseUnusedPages(std::vector<T>& elements) {
  releasePages(elements.data() + elements.size(), elements.data() + elements.capacity());
}

} // namespace Torvel
