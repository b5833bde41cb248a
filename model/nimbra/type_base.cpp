// SPDX-License-Identifier: BSD-3-Clause
// Keeps the table of published type objects.
#include "model/nimbra/type_base.h"

#include <mutex>

namespace Nimbra {

namespace {

using WeakType = Torvel::WeakPtr<NimbraTypeBase, NimbraTypeBase>;

struct Table {
  std::mutex mutex;
  // Weak: a type object belongs to the shared object that made it and ends with it.
  std::vector<WeakType> types;
};

Table& publishedTypes() {
  static Table* table = new Table;
  return *table;
}

} // namespace

NimbraTypeBase::NimbraTypeBase(const NimbraTypeIndex& index)
    : Torvel::ReferenceBase<NimbraTypeBase>(this), NimbraTypeIndex(index) {}

NimbraTypeBase::~NimbraTypeBase() = default;

void NimbraTypeBase::remember() {
  Table& table = publishedTypes();
  const std::lock_guard lock(table.mutex);
  table.types.emplace_back(this);
}

std::vector<Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase>> NimbraTypeBase::rememberedTypes() {
  Table& table = publishedTypes();
  const std::lock_guard lock(table.mutex);
  std::vector<Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase>> live;
  for (const WeakType& type : table.types) {
    if (type) {
      live.emplace_back(type);
    }
  }
  return live;
}

} // namespace Nimbra
