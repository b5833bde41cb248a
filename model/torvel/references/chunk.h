// SPDX-License-Identifier: BSD-3-Clause
// The memory block: a vector of elements with the virtual interfaces of model/torvel/references/typed_chunk.h
#pragma once

#include "model/torvel/references/fresh_elements.h"
#include "model/torvel/references/typed_chunk.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace Torvel {

/// A typed memory block. It is the vector that owns the elements.
///
/// The elements of a new chunk are zero for the scalar types and empty for std::string; the values of new
/// points, vectors and colours are unspecified.
///
/// \threads the elements are not protected
template <class T>
class TORVEL_API Chunk final : public TypedChunk<T>, public std::vector<T> {
 public:
  /// \param count  number of elements
  /// \errors  std::length_error "cannot create std::vector larger than max_size()", std::bad_alloc
  explicit Chunk(std::size_t count) {
    makeFreshElements<T>(*this, count);
    account(static_cast<std::int64_t>(count * sizeof(T)));
  }
  ~Chunk() override { account(-static_cast<std::int64_t>(this->size() * sizeof(T))); }

  std::size_t elementCount() const override { return this->size(); }
  std::size_t elementBytes() const override { return sizeof(T); }
  void* data() override { return this->empty() ? nullptr : std::vector<T>::data(); }
  const void* data() const override { return this->empty() ? nullptr : std::vector<T>::data(); }
  const std::type_info& elementType() override { return typeid(T); }
  const std::type_info& elementType() const override { return typeid(T); }
  ElementDescription elementDescription() const override { return {&typeid(T), sizeof(T), 1, 0}; }

  StrongPtr<ChunkBase, ChunkBase> create(std::size_t count, bool reserveOnly) const override {
    return createTyped(count, reserveOnly);
  }

  StrongPtr<ChunkBase, ChunkBase> clone() const override {
    if constexpr (std::is_trivially_copyable_v<T>) {
      StrongPtr<Chunk, ChunkBase> copy(new Chunk(this->size()));
      if (!this->empty()) {
        std::memcpy(copy->data(), data(), this->size() * sizeof(T));
      }
      return copy;
    } else {
      StrongPtr<Chunk, ChunkBase> copy(new Chunk(0));
      copy->values() = values();
      copy->account(static_cast<std::int64_t>(this->size() * sizeof(T)));
      return copy;
    }
  }

  std::vector<T>& values() override { return *this; }
  const std::vector<T>& values() const override { return *this; }

  /// \errors  as the constructor; std::length_error "vector::reserve" with `reserveOnly`
  StrongPtr<TypedChunk<T>, ChunkBase> createTyped(std::size_t count, bool reserveOnly) const override {
    if (!reserveOnly) {
      return StrongPtr<TypedChunk<T>, ChunkBase>(new Chunk(count));
    }
    StrongPtr<Chunk, ChunkBase> roomy(new Chunk(0));
    roomy->values().reserve(count);
    return roomy;
  }

 private:
  static void account(std::int64_t bytes) { addLossy<std::int64_t>(ChunkBase::TotalMemsize, bytes); }
};

} // namespace Torvel
