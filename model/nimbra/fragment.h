// SPDX-License-Identifier: BSD-3-Clause
// Identity of a fragment, and the collection of fragments that a group of fields shares.
#pragma once

#include "model/torvel/objects/interface.h"

#include <deque>
#include <string>

namespace Nimbra {

/// Identity of a fragment. A fragment is one block of records, the same in every field over one collection.
class TORVEL_API FragmentID : public Torvel::ReferenceBase<FragmentID>, public Torvel::Intercube {
 public:
  explicit FragmentID(const std::string& name);
  ~FragmentID() override;

  const std::string& name() const { return fragmentName; }

 private:
  const std::string fragmentName;
};

/// The fragment identities of a group of fields, in order of creation.
///
/// \threads not safe: one thread at a time
class TORVEL_API FragmentIDCollection : public Torvel::ReferenceBase<FragmentIDCollection> {
 public:
  using Identities = std::deque<Torvel::StrongPtr<FragmentID, FragmentID>>;

  FragmentIDCollection();
  ~FragmentIDCollection() override;

  /// Makes the fragment of that name, or returns the existing one.
  /// \return valid as long as the collection lives
  /// \errors  std::bad_alloc
  const Torvel::StrongPtr<FragmentID, FragmentID>& makeFragmentID(const std::string& name);

  /// \return all fragments in order of creation
  const Identities& fragments() const { return identities; }

 private:
  Identities identities;
};

/// An object over a collection of fragments.
class TORVEL_API FragmentIDCollectionProvider {
 public:
  virtual ~FragmentIDCollectionProvider();
  /// \return the collection
  virtual Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection> fragmentIDCollection() const = 0;

 protected:
  FragmentIDCollectionProvider();
};

} // namespace Nimbra
