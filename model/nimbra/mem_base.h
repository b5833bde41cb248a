// SPDX-License-Identifier: BSD-3-Clause
// The abstract memory array, and the table through which the framework makes arrays by element type.
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

/// An array of elements of one type, of rank 1 to 4, whose rank and type are only known at run time.
///
/// Requests that can't be met give a null pointer and no report. An array is not synchronised.
class TORVEL_API MemBase : public Torvel::Cacheable, public Torvel::Intercube {
 public:
  using Pointer = Torvel::StrongPtr<MemBase, Torvel::Cacheable>;
  using Creator = Torvel::WeakPtr<CreativeArrayBase, Torvel::Creature>;

  /// Makes arrays of one element type.
  class TORVEL_API Allocator : public Torvel::Interface<Allocator> {
   public:
    ~Allocator() override;
    /// A new array of the given extents; null for a rank outside 1 to 4.
    virtual Pointer create(const DynamicSize& extents) const = 0;

   protected:
    Allocator();
  };

  /// One line of the table of allocators.
  struct RegisteredCreator {
    Torvel::StrongPtr<Allocator, Torvel::InterfaceBase> allocator;
    Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> type;
  };

  ~MemBase() override;

  // memorySize, saveInterfaces, DomainType and CreatorType come from Cacheable.

  /// Number of extents, 1 to 4.
  virtual int rank() const = 0;
  /// The extents, the fastest running first.
  virtual DynamicSize dimensions() const = 0;
  /// Product of the extents.
  virtual std::uint64_t elementCount() const = 0;
  /// Type of one element, such as double or point.
  virtual const std::type_info& elementType() const = 0;
  /// The array as what it is iterated by: a `Nimbra::ElementIterator` of the element type.
  virtual HyperslabParameters* iterator() = 0;
  /// Element `index` in storage order as text, the shortest that reads back; components with one blank
  /// between them; empty where there is no such element.
  virtual std::string elementText(std::uint64_t index) const = 0;
  /// First element in memory. Valid as long as the array lives and its chunk keeps its length.
  virtual void* rawData() const = 0;
  /// The chunk that holds the elements, null where it is gone.
  virtual Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase> chunkBase() const = 0;
  /// Reserved; 0.
  virtual int reservedA() const = 0;
  virtual int reservedB() const = 0;
  /// A strong hold of this array.
  virtual Pointer self() = 0;
  /// A view of the same chunk; null where `depth` is above 0.
  virtual Pointer shallowView(int depth, const Creator& creator) = 0;
  /// A fresh array with the elements of a part of this one; null where a rank doesn't fit. That the part lies
  /// within the array is the caller's affair.
  virtual Pointer copyHyperslab(const DynamicSize& start, const DynamicSize& count,
                                const Creator& creator) const = 0;
  /// An array of the same extents over a foreign chunk; null where its element count or type differs.
  virtual Pointer arrayOver(const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>& foreign,
                            const Creator& creator) const = 0;
  /// Takes over the elements of another chunk of the same type and count. \returns false with nothing changed
  virtual bool replaceContents(const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>& source) = 0;
  /// An array over a copy of the elements; null where the chunk is gone.
  virtual Pointer deepCopy() const = 0;

  /// The record of the element type, as the array was made with.
  const NimbraTypeIndex& typeIndex() const { return index; }
  /// What created the array; null where nothing did.
  const Creator& createdBy() const { return arrayCreator; }

  /// Number of arrays made of registered types; diagnostic, increments may be lost.
  static int RegisteredTypes;

  /// Enters an allocator for an element type. The table holds the allocator for the rest of the process.
  /// \returns true where the type was new; a type that is there keeps its allocator
  /// \threads safe
  static bool registerCreator(const Torvel::StrongPtr<Allocator, Torvel::InterfaceBase>& allocator,
                              const Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase>& type);

  /// The table in order of registration. \threads safe
  static std::vector<RegisteredCreator> registeredCreators();
  /// A new array by element type; null where the type isn't registered or the rank isn't served. \threads safe
  static Pointer createArray(const std::type_info& elementType, const DynamicSize& extents);

 protected:
  MemBase(const NimbraTypeIndex& index, const Creator& creator);

 private:
  const NimbraTypeIndex index;
  const Creator arrayCreator;
};

} // namespace Nimbra
