// SPDX-License-Identifier: BSD-3-Clause
// Registers element types in the tables of the data model, so that arrays of them can be made by type.
#pragma once

#include "arrays/nimbra/element_records.h"
#include "arrays/nimbra/mem_array.h"

#include <cstring>
#include <tuple>
#include <typeinfo>

namespace Nimbra {

/// The type object of an element type. Its constructor publishes it.
///
/// \threads safe once it is constructed
template <class T>
class TORVEL_API NimbraType : public NimbraTypeBase {
 public:
  using ChunkPointer = Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>;

  explicit NimbraType(const NimbraTypeIndex& record) : NimbraTypeBase(record) { this->remember(); }
  ~NimbraType() override = default;

  const std::type_info& elementType() const override { return typeid(T); }
  bool isElementType(const std::type_info& type) const override {
    return type.name() == typeid(T).name() || type == typeid(T);
  }
  ChunkPointer create(std::size_t count) const override { return ChunkPointer(new Torvel::Chunk<T>(count)); }
  std::uint32_t firstWord(const void* value) const override {
    std::uint32_t word = 0;
    std::memcpy(&word, value, sizeof(T) < sizeof(word) ? sizeof(T) : sizeof(word));
    return word;
  }
  Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> self() override { return this; }
  std::string suffix() const override { return std::string(); }
  const std::type_info& domainType() const override { return typeid(typename ElementTraits<T>::Domain); }
  int reservedA() const override { return 0; }
  int reservedB() const override { return 0; }
};

/// Makes arrays of T of rank 1 to 4.
template <class T>
class TORVEL_API MemArrayAllocator final : public MemBase::Allocator {
 public:
  MemBase::Pointer create(const DynamicSize& extents) const override {
    switch (extents.rank) {
    case 1:
      return make<1>(extents);
    case 2:
      return make<2>(extents);
    case 3:
      return make<3>(extents);
    case 4:
      return make<4>(extents);
    default:
      return MemBase::Pointer();
    }
  }

 private:
  template <int N>
  static MemBase::Pointer make(const DynamicSize& extents) {
    MultiIndex<N> size;
    for (std::size_t rank = 0; rank < size.size(); ++rank) {
      size[rank] = extents.extents[rank];
    }
    return MemBase::Pointer(new MemArray<N, T>(size, nullptr));
  }
};

/// \return the only type object of T, which lives until the end of the process
/// \errors  std::bad_alloc
/// \threads safe
template <class T>
TORVEL_API Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> getNimbraType() {
  static Torvel::Auto<NimbraType<T>> type(elementRecord<T>());
  return Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase>(&type);
}

/// Registers the allocator and the type object of T at the first call.
/// \return the result of MemBase::registerCreator at the first call
/// \errors  std::bad_alloc
/// \threads safe
template <class T>
TORVEL_API bool registerMemArray() {
  static const bool entered = [] {
    const Torvel::StrongPtr<MemBase::Allocator, Torvel::InterfaceBase> allocator(new MemArrayAllocator<T>);
    return MemBase::registerCreator(allocator, getNimbraType<T>());
  }();
  return entered;
}

/// Registers the given element types in their order. The first pass sets the flags of rank 1, the second
/// those of the ranks 2 to 4.
/// \errors  std::bad_alloc
/// \threads not safe: the flags are plain; called while the library is loaded
template <class... Types>
void registerElementTypes(std::type_identity<std::tuple<Types...>>) {
  ((registerMemArray<Types>(), MemArray<1, Types>::registered = true), ...);
  ((registerMemArray<Types>(), MemArray<2, Types>::registered = true, MemArray<3, Types>::registered = true,
    MemArray<4, Types>::registered = true),
   ...);
}

} // namespace Nimbra
