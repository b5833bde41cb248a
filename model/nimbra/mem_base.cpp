// SPDX-License-Identifier: BSD-3-Clause
// Keeps the table of allocators, and implements what arrays of all element types share.
#include "model/nimbra/mem_base.h"

#include <algorithm>
#include <mutex>

namespace Nimbra {

namespace {

struct Table {
  std::mutex mutex;
  std::vector<MemBase::RegisteredCreator> entries;
};

Table& creators() {
  // Never destroyed: other shared objects may make arrays until the process ends.
  static Table* table = new Table;
  return *table;
}

auto servesType(const std::type_info& type) {
  return [&type](const MemBase::RegisteredCreator& entry) {
    return entry.type && entry.type->isElementType(type);
  };
}

} // namespace

int MemBase::RegisteredTypes = 0;

MemBase::Allocator::Allocator() = default;
MemBase::Allocator::~Allocator() = default;

MemBase::MemBase(const NimbraTypeIndex& elementIndex, const Creator& creator)
    : index(elementIndex), arrayCreator(creator) {}

MemBase::~MemBase() = default;

bool MemBase::registerCreator(const Torvel::StrongPtr<Allocator, Torvel::InterfaceBase>& allocator,
                              const Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase>& type) {
  if (!allocator || !type) {
    return false;
  }
  Table& table = creators();
  const std::lock_guard lock(table.mutex);
  if (std::any_of(table.entries.begin(), table.entries.end(), servesType(type->elementType()))) {
    return false;
  }
  table.entries.push_back({allocator, type});
  return true;
}

std::vector<MemBase::RegisteredCreator> MemBase::registeredCreators() {
  Table& table = creators();
  const std::lock_guard lock(table.mutex);
  return table.entries;
}

MemBase::Pointer MemBase::createArray(const std::type_info& elementType, const DynamicSize& extents) {
  const std::vector<RegisteredCreator> known = registeredCreators();
  const auto found = std::find_if(known.begin(), known.end(), servesType(elementType));
  return found != known.end() ? found->allocator->create(extents) : Pointer();
}

} // namespace Nimbra
