// SPDX-License-Identifier: BSD-3-Clause
// Descriptions of element types, and the bases of arrays.
#include "model/nimbra/mem_base.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <typeindex>

namespace Nimbra {

NimbraTypeBase::NimbraTypeBase(const NimbraTypeIndex& index)
    : Torvel::ReferenceBase<NimbraTypeBase>(this), NimbraTypeIndex(index) {}
NimbraTypeBase::~NimbraTypeBase() = default;
void NimbraTypeBase::remember() {}

DynamicSize::DynamicSize(int extentCount, const std::uint64_t* source)
    : rank(extentCount), extents(new std::uint64_t[static_cast<std::size_t>(std::max(extentCount, 0))]) {
  std::copy_n(source, std::max(extentCount, 0), extents);
}
DynamicSize::DynamicSize(const DynamicSize& other) : DynamicSize(other.rank, other.extents) {}
DynamicSize& DynamicSize::operator=(const DynamicSize& other) {
  DynamicSize copy(other);
  std::swap(rank, copy.rank);
  std::swap(extents, copy.extents);
  return *this;
}
DynamicSize::~DynamicSize() {
  delete[] extents;
}

MemBase::MemBase(const NimbraTypeIndex& index, const Creator& creator)
    : description_(index), creator_(creator) {}
MemBase::~MemBase() = default;

int MemBase::RegisteredTypes = 0;

namespace {

struct Creators {
  struct Entry {
    Torvel::StrongPtr<MemBase::Allocator, Torvel::InterfaceBase> allocator;
    Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> type;
  };
  std::mutex mutex;
  std::map<std::type_index, Entry> entries;
};

Creators& creators() {
  static Creators table;
  return table;
}

} // namespace

bool MemBase::registerCreator(const Torvel::StrongPtr<Allocator, Torvel::InterfaceBase>& allocator,
                              const Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase>& type) {
  Creators& table = creators();
  const std::scoped_lock lock(table.mutex);
  return table.entries.try_emplace(type->elementType(), Creators::Entry{allocator, type}).second;
}

Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> MemBase::registeredType(const std::type_info& element) {
  Creators& table = creators();
  const std::scoped_lock lock(table.mutex);
  const auto found = table.entries.find(element);
  return found != table.entries.end() ? found->second.type : nullptr;
}

} // namespace Nimbra
