// SPDX-License-Identifier: BSD-3-Clause
// Identities: of a fragment (one block of records) and of the fragments that a group of fields shares.
#pragma once

#include "model/torvel/objects/interface.h"

#include <deque>
#include <string>

namespace Nimbra {

/// Identity of a fragment: a piece of a field, the same piece in every field over the same collection.
class TORVEL_API FragmentID : public Torvel::ReferenceBase<FragmentID>, public Torvel::Intercube {
 public:
  explicit FragmentID(const std::string& name);
  ~FragmentID() override;

  const std::string& name() const { return fragmentName; }

 private:
  const std::string fragmentName;
};

/// The fragment identities of a group of fields, in order of creation.
class TORVEL_API FragmentIDCollection : public Torvel::ReferenceBase<FragmentIDCollection> {
 public:
  using Identities = std::deque<Torvel::StrongPtr<FragmentID, FragmentID>>;

  FragmentIDCollection();
  ~FragmentIDCollection() override;

  /// Makes the fragment of that name, or hands back the one there is. The reference stays valid as long as
  /// the collection lives.
  const Torvel::StrongPtr<FragmentID, FragmentID>& makeFragmentID(const std::string& name);

  const Identities& fragments() const { return identities; }

 private:
  Identities identities;
};

/// Something that can tell over which fragments it lies.
class TORVEL_API FragmentIDCollectionProvider {
 public:
  virtual ~FragmentIDCollectionProvider();
  virtual Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection> fragmentIDCollection() const = 0;

 protected:
  FragmentIDCollectionProvider();
};

} // namespace Nimbra
