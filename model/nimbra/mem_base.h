// SPDX-License-Identifier: BSD-3-Clause
// The abstract memory array, and the table of allocators that makes arrays by element type.
#pragma once

#include "model/nimbra/dynamic_size.h"
#include "model/nimbra/ownable.h"
#include "model/nimbra/type_base.h"
#include "model/torvel/references/chunk_base.h"

#include <cstdint>
#include <string>
#include <typeinfo>
#include <vector>

namespace Nimbra {

struct HyperslabParameters;

/// An array of rank 1 to 4 whose rank and element type are known at run time only.
///
/// A request that can't be met returns a null pointer and reports nothing.
///
/// \threads the counts may be changed from several threads, the array is not protected
class TORVEL_API MemBase : public Torvel::Cacheable, public Torvel::Intercube {
 public:
  using Pointer = Torvel::StrongPtr<MemBase, Torvel::Cacheable>;
  using Creator = Torvel::WeakPtr<CreativeArrayBase, Torvel::Creature>;

  /// Makes arrays of one element type.
  class TORVEL_API Allocator : public Torvel::Interface<Allocator> {
   public:
    ~Allocator() override;
    /// Makes a new array with a chunk of its own.
    /// \param extents  rank and extents in elements
    /// \return null for a rank outside 1 to 4
    /// \errors  std::length_error, std::bad_alloc
    virtual Pointer create(const DynamicSize& extents) const = 0;

   protected:
    Allocator();
  };

  /// One entry of the table of allocators.
  struct RegisteredCreator {
    Torvel::StrongPtr<Allocator, Torvel::InterfaceBase> allocator;
    Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> type;
  };

  ~MemBase() override;

  // memorySize, saveInterfaces, DomainType and CreatorType come from Cacheable.

  /// \return the number of extents, 1 to 4
  virtual int rank() const = 0;
  /// \return the extents in elements, the fastest running first
  virtual DynamicSize dimensions() const = 0;
  /// \return the product of the extents
  virtual std::uint64_t elementCount() const = 0;
  /// \return the type of one element, such as double or point
  virtual const std::type_info& elementType() const = 0;
  /// \return the array's `Nimbra::ElementIterator` of the element type; owned by the array
  virtual HyperslabParameters* iterator() = 0;
  /// \param index  in storage order
  /// \return the element as text: the shortest form that reads back to the same value, components separated
  /// by one blank; empty where there is no such element
  virtual std::string elementText(std::uint64_t index) const = 0;
  /// \return the first element in memory; owned by the chunk, valid until the length of the chunk changes
  virtual void* rawData() const = 0;
  /// \return the chunk that holds the elements, null where there is none
  virtual Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase> chunkBase() const = 0;
  /// Reserved; 0.
  virtual int reservedA() const = 0;
  virtual int reservedB() const = 0;
  /// \return a strong pointer to this array
  virtual Pointer self() = 0;
  /// Makes a view of the same chunk.
  /// \return null where `depth` is above 0
  /// \errors  std::bad_alloc
  virtual Pointer shallowView(int depth, const Creator& creator) = 0;
  /// Makes a new array with a copy of a part of the elements.
  /// \param start  index of the part's first element
  /// \param count  extents of the part; the caller guarantees that it lies within the array
  /// \return null where a rank differs from that of the array
  /// \errors  std::length_error, std::bad_alloc
  virtual Pointer copyHyperslab(const DynamicSize& start, const DynamicSize& count,
                                const Creator& creator) const = 0;
  /// Makes an array of the same extents over another chunk, which it shares.
  /// \return null where the element count or the element type differs
  /// \errors  std::bad_alloc
  virtual Pointer arrayOver(const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>& foreign,
                            const Creator& creator) const = 0;
  /// Copies the elements of another chunk of the same element type and count.
  /// \return false, with nothing changed, where type or count differs
  /// \errors  std::bad_alloc
  virtual bool replaceContents(const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>& source) = 0;
  /// Makes an array over a copy of the elements.
  /// \return null where there is no chunk
  /// \errors  std::bad_alloc
  virtual Pointer deepCopy() const = 0;

  /// \return the record of the element type
  const NimbraTypeIndex& typeIndex() const { return index; }
  /// \return the creator of the array, null where it has none
  const Creator& createdBy() const { return arrayCreator; }

  /// Number of arrays made of registered types, for diagnostics; increments from several threads may be lost.
  static int RegisteredTypes;

  /// Registers an allocator for an element type, for the rest of the process.
  /// \param allocator,type  held strongly by the table
  /// \return true where the type was new; a registered type keeps its allocator, and a null pointer is not
  /// registered
  /// \errors  std::bad_alloc
  /// \threads safe
  static bool registerCreator(const Torvel::StrongPtr<Allocator, Torvel::InterfaceBase>& allocator,
                              const Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase>& type);

  /// \return a copy of the table, in order of registration
  /// \errors  std::bad_alloc
  /// \threads safe
  static std::vector<RegisteredCreator> registeredCreators();
  /// Makes a new array by element type.
  /// \return null where the type isn't registered or the rank is outside 1 to 4
  /// \errors  std::length_error, std::bad_alloc
  /// \threads safe
  static Pointer createArray(const std::type_info& elementType, const DynamicSize& extents);

 protected:
  /// \param index  record of the element type, copied
  /// \param creator  what made the array; null for none
  MemBase(const NimbraTypeIndex& index, const Creator& creator);

 private:
  const NimbraTypeIndex index;
  const Creator arrayCreator;
};

} // namespace Nimbra
