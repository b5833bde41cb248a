// SPDX-License-Identifier: BSD-3-Clause
// A module that is loaded at run time and reports what it finds in the tables.
#include "arrays/nimbra/registration.h"

#define MODULE_API extern "C" __attribute__((visibility("default")))

MODULE_API void enterElementTypes() {
  Nimbra::registerElementTypes(std::type_identity<Nimbra::ElementTypes>());
}

MODULE_API std::size_t knownAllocators() {
  return Nimbra::MemBase::registeredCreators().size();
}

MODULE_API std::size_t knownTypes() {
  return Nimbra::NimbraTypeBase::rememberedTypes().size();
}

MODULE_API const void* pointType() {
  return Nimbra::getNimbraType<Quillon::PhysicalSpace::point>().get();
}

/// Makes an array of `count` points through the table; null where points aren't registered.
MODULE_API void makePoints(std::uint64_t count, Nimbra::MemBase::Pointer& made) {
  made = Nimbra::MemBase::createArray(typeid(Quillon::PhysicalSpace::point), Nimbra::DynamicSize{count});
}

/// Whether this module sees the array's chunk as a chunk of points.
MODULE_API bool seesPoints(const Nimbra::MemBase::Pointer& array) {
  using Points = Torvel::TypedChunk<Quillon::PhysicalSpace::point>;
  const Torvel::StrongPtr<Points, Torvel::ChunkBase> points(array->chunkBase());
  const Torvel::StrongPtr<Nimbra::TypedArray<Quillon::PhysicalSpace::point>, Torvel::Cacheable> typed(array);
  return points && typed;
}
