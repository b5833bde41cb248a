// SPDX-License-Identifier: BSD-3-Clause
// Makes and finds fragment identities.
#include "model/nimbra/fragment.h"

#include <algorithm>

namespace Nimbra {

FragmentID::FragmentID(const std::string& name)
    : Torvel::ReferenceBase<FragmentID>(this), fragmentName(name) {}
FragmentID::~FragmentID() = default;

FragmentIDCollection::FragmentIDCollection() : Torvel::ReferenceBase<FragmentIDCollection>(this) {}
FragmentIDCollection::~FragmentIDCollection() = default;

const Torvel::StrongPtr<FragmentID, FragmentID>&
FragmentIDCollection::makeFragmentID(const std::string& name) {
  const auto found = std::find_if(identities.begin(), identities.end(),
                                  [&name](const auto& identity) { return identity->name() == name; });
  if (found != identities.end()) {
    return *found;
  }
  return identities.emplace_back(new FragmentID(name));
}

FragmentIDCollectionProvider::FragmentIDCollectionProvider() = default;
FragmentIDCollectionProvider::~FragmentIDCollectionProvider() = default;

} // namespace Nimbra
