// SPDX-License-Identifier: BSD-3-Clause
// A memory block whose element type is only known at run time.
#pragma once

#include "model/torvel/core/api.h"
#include "model/torvel/references/pointer.h"

#include <cstddef>
#include <cstdint>
#include <typeinfo>

namespace Torvel {

/// Describes one element of a chunk.
struct ElementDescription {
  const std::type_info* type; ///< never null
  std::size_t elementBytes;   ///< bytes of one element
  std::size_t count;          ///< elements described, always 1
  std::size_t reserved;       ///< always 0
};

/// A reference-counted memory block of elements of one type. The elements live as long as the chunk.
///
/// \threads the counts may be changed from several threads, the elements are not protected
class TORVEL_API ChunkBase : public ReferenceBase<ChunkBase> {
 public:
  /// Bytes of all chunks of the process, for diagnostics. It grows by the size at construction and shrinks by
  /// the size at destruction, so a chunk that was resized in between leaves the difference in the sum.
  /// Changes from several threads at once may be lost.
  static std::int64_t TotalMemsize;

  ~ChunkBase() override;

  /// \return the number of elements
  virtual std::size_t elementCount() const = 0;
  /// \return the bytes of one element
  virtual std::size_t elementBytes() const = 0;
  /// \return the first element, null where there is none; owned by the chunk, valid until the number of
  /// elements changes
  virtual void* data() = 0;
  virtual const void* data() const = 0;
  /// \return the type of an element
  virtual const std::type_info& elementType() = 0;
  virtual const std::type_info& elementType() const = 0;
  /// \return the type and the size of an element in one value
  virtual ElementDescription elementDescription() const = 0;

  /// Makes a new chunk of the same element type.
  /// \param count  number of elements
  /// \param reserveOnly  true makes the chunk empty, with capacity for `count` elements
  /// \errors  std::length_error, std::bad_alloc
  virtual StrongPtr<ChunkBase, ChunkBase> create(std::size_t count, bool reserveOnly) const = 0;
  /// Makes a new chunk with a copy of the elements.
  /// \errors  std::bad_alloc
  virtual StrongPtr<ChunkBase, ChunkBase> clone() const = 0;

 protected:
  ChunkBase();
};

} // namespace Torvel
