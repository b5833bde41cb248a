// SPDX-License-Identifier: BSD-3-Clause
// Arrays whose rank and element type are known at run time only.
#pragma once

#include "model/nimbra/type_base.h"
#include "model/torvel/objects/interface.h"
#include "quarry/model/cacheable.h"

namespace Nimbra {

struct HyperslabParameters;

class TORVEL_API CreativeArrayBase : public Torvel::Creature {};

/// A rank and its extents, the fastest running first.
struct TORVEL_API DynamicSize {
  int rank = 0;
  std::uint64_t* extents = nullptr;
  DynamicSize(int extentCount, const std::uint64_t* source);
  DynamicSize(const DynamicSize& other);
  DynamicSize& operator=(const DynamicSize& other);
  ~DynamicSize();
};

class TORVEL_API MemBase : public Torvel::Cacheable {
 public:
  using Pointer = Torvel::StrongPtr<MemBase, Torvel::Cacheable>;
  using Creator = Torvel::WeakPtr<CreativeArrayBase, Torvel::Creature>;
  using ChunkPointer = Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>;

  class TORVEL_API Allocator : public Torvel::Interface<Allocator> {
   public:
    virtual Pointer create(const DynamicSize& extents) const = 0;
  };

  ~MemBase() override;
  virtual int rank() const = 0;
  virtual DynamicSize dimensions() const = 0;
  virtual std::uint64_t elementCount() const = 0;
  virtual const std::type_info& elementType() const = 0;
  virtual void* rawData() const = 0;
  virtual std::string elementText(std::uint64_t index) const = 0;
  virtual HyperslabParameters* iterator() = 0;
  virtual ChunkPointer chunkBase() const = 0;
  virtual bool replaceContents(const ChunkPointer& source) = 0;
  virtual Pointer self() = 0;
  virtual Pointer deepCopy() const = 0;
  virtual Pointer shallowView(int depth, const Creator& creator) = 0;
  virtual Pointer copyHyperslab(const DynamicSize& start, const DynamicSize& count,
                                const Creator& creator) const = 0;
  virtual Pointer arrayOver(const ChunkPointer& foreign, const Creator& creator) const = 0;
  virtual int reservedA() const = 0;
  virtual int reservedB() const = 0;

  static int RegisteredTypes;
  static bool registerCreator(const Torvel::StrongPtr<Allocator, Torvel::InterfaceBase>& allocator,
                              const Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase>& type);
  /// The description under which an element type was registered; null for another type.
  static Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> registeredType(const std::type_info& element);

  const NimbraTypeIndex& description() const { return description_; }

 protected:
  MemBase(const NimbraTypeIndex& index, const Creator& creator);

 private:
  NimbraTypeIndex description_;
  Creator creator_;
};

} // namespace Nimbra
