// SPDX-License-Identifier: BSD-3-Clause
// Stores the arrays of a field by fragment.
#include "model/nimbra/field.h"

#include <algorithm>

namespace Nimbra {

SaveableAttributes::SaveableAttributes() = default;
SaveableAttributes::~SaveableAttributes() = default;

Field::Field(const Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection>& collection)
    : collectionOfFragments(collection ? collection : new FragmentIDCollection) {}

Field::~Field() = default;

Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection> Field::fragmentIDCollection() const {
  return collectionOfFragments;
}

const Torvel::StrongPtr<FragmentID, FragmentID>& Field::makeFragmentID(const std::string& name) {
  return collectionOfFragments->makeFragmentID(name);
}

void Field::setPersistentData(const MemBase::Pointer& array,
                              const Torvel::StrongPtr<FragmentID, FragmentID>& fragment,
                              const Torvel::StrongPtr<Torvel::Cache, Torvel::CacheBase>& cache,
                              const std::string&) {
  const Torvel::StrongPtr<Torvel::Cacheable, Torvel::Cacheable> data(array);
  const Torvel::StrongPtr<Torvel::Cacheable, Torvel::Cacheable> held = cache ? cache->keep(data) : data;
  const auto found = std::find_if(pieces.begin(), pieces.end(),
                                  [&fragment](const Fragment& piece) { return piece.identity == fragment; });
  if (found != pieces.end()) {
    found->held = held;
  } else {
    pieces.push_back({fragment, held});
  }
}

MemBase::Pointer Field::array(const std::string& fragmentName) const {
  const auto found = std::find_if(pieces.begin(), pieces.end(), [&fragmentName](const Fragment& piece) {
    return piece.identity && piece.identity->name() == fragmentName;
  });
  return found != pieces.end() ? found->array() : MemBase::Pointer();
}

} // namespace Nimbra
