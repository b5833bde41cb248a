// SPDX-License-Identifier: BSD-3-Clause
// A field: one array per fragment, with attributes of its own.
#pragma once

#include "model/nimbra/fragment.h"
#include "model/nimbra/mem_base.h"
#include "model/nimbra/ownable.h"
#include "model/torvel/objects/attributes.h"
#include "model/torvel/objects/cache.h"

#include <deque>
#include <string>

namespace Nimbra {

/// Attributes that are saved together with the object they hang on.
class TORVEL_API SaveableAttributes : public Torvel::Attributes {
 public:
  SaveableAttributes();
  ~SaveableAttributes() override;
};

/// A column of a grid: for each fragment identity of its collection at most one array, in order of creation.
///
/// \threads none: one thread at a time
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

    /// The array of this piece.
    MemBase::Pointer array() const { return held; }
  };

  /// A new field over an existing collection, or over one of its own where that is null. Made with plain
  /// `new`; its first strong pointer owns it.
  explicit Field(const Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection>& collection);
  ~Field() override;

  /// The collection that the field lies over; never null.
  Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection> fragmentIDCollection() const override;

  /// Makes or finds the fragment of that name in the field's collection. The reference lives as long as that.
  const Torvel::StrongPtr<FragmentID, FragmentID>& makeFragmentID(const std::string& name);

  /// Makes `array` the data of that fragment; the field holds it strongly from here on. A second array under
  /// one fragment takes the place of the first.
  ///
  /// \param cache   decides how the array is held; an empty one means that the field holds it itself
  /// \param origin  where the data came from, for caches that can fetch it again; may be empty
  void setPersistentData(const MemBase::Pointer& array,
                         const Torvel::StrongPtr<FragmentID, FragmentID>& fragment,
                         const Torvel::StrongPtr<Torvel::Cache, Torvel::CacheBase>& cache,
                         const std::string& origin);

  /// The pieces that have data, in the order in which they got their first array.
  const std::deque<Fragment>& fragments() const { return pieces; }
  /// The array of a fragment by name, null where there is none.
  MemBase::Pointer array(const std::string& fragmentName) const;

  /// The field's own attributes; they live as long as it.
  SaveableAttributes& attributes() { return saveable; }
  const SaveableAttributes& attributes() const { return saveable; }

 private:
  const Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection> collectionOfFragments;
  std::deque<Fragment> pieces;
  SaveableAttributes saveable;
};

} // namespace Nimbra
