// SPDX-License-Identifier: BSD-3-Clause
// A field: one array per fragment, and attributes.
#pragma once

#include "model/nimbra/fragment.h"
#include "model/nimbra/mem_base.h"
#include "model/nimbra/ownable.h"
#include "model/torvel/objects/attributes.h"
#include "model/torvel/objects/cache.h"

#include <deque>
#include <string>

namespace Nimbra {

/// Attributes that are saved together with their object.
class TORVEL_API SaveableAttributes : public Torvel::Attributes {
 public:
  SaveableAttributes();
  ~SaveableAttributes() override;
};

/// A column of a grid: at most one array per fragment identity of its collection, in order of creation.
///
/// \threads not safe: one thread at a time
class TORVEL_API Field : public Ownable<CreativeArrayBase, CreativeArrayBaseContainerBase>::Container,
                         public Ownable<Field, ChildrenProperties>,
                         public Torvel::Intercube,
                         public FragmentIDCollectionProvider {
 public:
  using Family = Ownable<CreativeArrayBase, CreativeArrayBaseContainerBase>::Container;
  using Pointer = Torvel::StrongPtr<Field, Family>;

  /// One piece of the field.
  struct Fragment {
    Torvel::StrongPtr<FragmentID, FragmentID> identity;
    Torvel::StrongPtr<Torvel::Cacheable, Torvel::Cacheable> held;

    /// \return the array of this piece
    MemBase::Pointer array() const { return held; }
  };

  /// Made with plain `new`; its first strong pointer owns it.
  /// \param collection  shared with the field; null makes a new one
  /// \errors  std::bad_alloc
  explicit Field(const Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection>& collection);
  ~Field() override;

  /// \return the collection of the field's fragments; never null
  Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection> fragmentIDCollection() const override;

  /// Makes or finds the fragment of that name in the field's collection.
  /// \return valid as long as the collection lives
  /// \errors  std::bad_alloc
  const Torvel::StrongPtr<FragmentID, FragmentID>& makeFragmentID(const std::string& name);

  /// Makes `array` the data of a fragment, in place of the array that the fragment had. The field holds a
  /// strong reference to it.
  ///
  /// \param cache   decides how the array is held; with an empty pointer the field holds it itself
  /// \param origin  source of the data, for caches that can fetch it again; may be empty
  /// \errors  std::bad_alloc
  void setPersistentData(const MemBase::Pointer& array,
                         const Torvel::StrongPtr<FragmentID, FragmentID>& fragment,
                         const Torvel::StrongPtr<Torvel::Cache, Torvel::CacheBase>& cache,
                         const std::string& origin);

  /// \return the pieces that have data, in the order in which they received their first array; lives as long
  /// as the field
  const std::deque<Fragment>& fragments() const { return pieces; }
  /// \return the array of a fragment by name, null where there is none
  MemBase::Pointer array(const std::string& fragmentName) const;

  /// \return the field's attributes; they live as long as the field
  SaveableAttributes& attributes() { return saveable; }
  const SaveableAttributes& attributes() const { return saveable; }

 private:
  const Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection> collectionOfFragments;
  std::deque<Fragment> pieces;
  SaveableAttributes saveable;
};

} // namespace Nimbra
