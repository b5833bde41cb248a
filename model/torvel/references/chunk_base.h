// SPDX-License-Identifier: BSD-3-Clause
// The typeless face of a memory block: what a holder can ask without knowing the element type.
#pragma once

#include "model/torvel/core/api.h"
#include "model/torvel/references/pointer.h"

#include <cstddef>
#include <cstdint>
#include <typeinfo>

namespace Torvel {

/// What a chunk says about one of its elements.
struct ElementDescription {
  const std::type_info* type; ///< never null
  std::size_t elementBytes;   ///< bytes of one element
  std::size_t count;          ///< elements described, always 1
  std::size_t reserved;       ///< always 0
};

/// A reference-counted memory block of elements of one type. The elements live as long as the chunk.
///
/// \threads the counts may be touched from several threads, the elements are not protected
class TORVEL_API ChunkBase : public ReferenceBase<ChunkBase> {
 public:
  /// Bytes of all chunks of the process, for diagnostics. It grows by the size at construction and shrinks by
  /// the size at destruction, so a chunk that was cut down in between leaves the difference for good; changes
  /// from several threads at once may be lost.
  static std::int64_t TotalMemsize;

  ~ChunkBase() override;

  /// Number of elements.
  virtual std::size_t elementCount() const = 0;
  /// Bytes of one element.
  virtual std::size_t elementBytes() const = 0;
  /// First element, null where there is none. Valid until the number of elements changes.
  virtual void* data() = 0;
  virtual const void* data() const = 0;
  /// Type of an element, in two forms.
  virtual const std::type_info& elementType() = 0;
  virtual const std::type_info& elementType() const = 0;
  /// The same facts in one value.
  virtual ElementDescription elementDescription() const = 0;

  /// A new chunk of the same type: with `count` elements, or empty with room for `count` of them.
  /// \errors  std::length_error, std::bad_alloc
  virtual StrongPtr<ChunkBase, ChunkBase> create(std::size_t count, bool reserveOnly) const = 0;
  /// A new chunk with a copy of the elements.
  /// \errors  std::bad_alloc
  virtual StrongPtr<ChunkBase, ChunkBase> clone() const = 0;

 protected:
  ChunkBase();
};

} // namespace Torvel
