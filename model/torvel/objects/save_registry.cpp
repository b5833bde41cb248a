// SPDX-License-Identifier: BSD-3-Clause
// Keeps the table of creators of save interfaces.
#include "model/torvel/objects/save_registry.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace Torvel {

namespace {

struct Entry {
  const std::type_info* kind;
  StrongPtr<SaveInterfaceCreatorBase, SaveInterfaceCreatorBase> creator;
};

struct Table {
  std::mutex mutex;
  std::vector<Entry> entries;
  std::atomic<bool> filled{false};
};

Table& creators() {
  static Table* table = new Table;
  return *table;
}

} // namespace

SaveInterfaceCreatorBase::SaveInterfaceCreatorBase() : ReferenceBase<SaveInterfaceCreatorBase>(this) {}
SaveInterfaceCreatorBase::~SaveInterfaceCreatorBase() = default;

void registerSaveCreator(const std::type_info& kind,
                         const StrongPtr<SaveInterfaceCreatorBase, SaveInterfaceCreatorBase>& creator) {
  Table& table = creators();
  const std::lock_guard lock(table.mutex);
  table.entries.push_back({&kind, creator});
  table.filled = true;
}

SaveRegistryBase::SaveRegistryBase() = default;
SaveRegistryBase::~SaveRegistryBase() = default;

void SaveRegistryBase::traverseCreators(const std::type_info& kind) {
  Table& table = creators();
  if (!table.filled) {
    return;
  }
  std::vector<Entry> known;
  {
    const std::lock_guard lock(table.mutex);
    known = table.entries;
  }
  for (const Entry& entry : known) {
    if (*entry.kind == kind && entry.creator) {
      use(*entry.creator);
    }
  }
}

} // namespace Torvel
