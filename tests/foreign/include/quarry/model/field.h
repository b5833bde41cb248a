// SPDX-License-Identifier: BSD-3-Clause
// Columns of a grid, and the identities of their fragments.
#pragma once

#include "model/nimbra/mem_base.h"
#include "model/torvel/objects/cache.h"
#include "quarry/model/attributes.h"

#include <deque>

namespace Nimbra {

class TORVEL_API ChildrenProperties;
class TORVEL_API CreativeArrayBaseContainerBase;
class TORVEL_API BaseSpace;

template <class Owned, class Properties>
class TORVEL_API Ownable {
 public:
  class TORVEL_API Container : public Torvel::ReferenceBase<Container> {
   protected:
    Container() : Torvel::ReferenceBase<Container>(this) {}
  };
};

class TORVEL_API SaveableAttributes : public Torvel::Attributes {};

class TORVEL_API FragmentID : public Torvel::ReferenceBase<FragmentID> {
 public:
  explicit FragmentID(std::string name);
  ~FragmentID() override;
  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

class TORVEL_API FragmentIDCollection : public Torvel::ReferenceBase<FragmentIDCollection> {
 public:
  FragmentIDCollection();
  ~FragmentIDCollection() override;
  const Torvel::StrongPtr<FragmentID, FragmentID>& make(const std::string& name);

 private:
  std::deque<Torvel::StrongPtr<FragmentID, FragmentID>> members_; // references to members stay valid
};

class TORVEL_API Field : public Ownable<CreativeArrayBase, CreativeArrayBaseContainerBase>::Container {
 public:
  using Pointer =
      Torvel::StrongPtr<Field, Ownable<CreativeArrayBase, CreativeArrayBaseContainerBase>::Container>;
  using Collection = Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection>;
  using Fragment = Torvel::StrongPtr<FragmentID, FragmentID>;
  struct Piece {
    Fragment fragment;
    MemBase::Pointer array;
  };

  explicit Field(const Collection& collection);
  ~Field() override;
  Collection fragmentIDCollection() const { return collection_; }
  const Fragment& makeFragmentID(const std::string& name) { return collection_->make(name); }
  void setPersistentData(const MemBase::Pointer& array, const Fragment& fragment,
                         const Torvel::StrongPtr<Torvel::Cache, Torvel::CacheBase>& cache,
                         const std::string& origin);
  SaveableAttributes& attributes() { return attributes_; }
  void touch();

  const std::vector<Piece>& pieces() const { return pieces_; }
  std::uint64_t changed() const { return changed_; } // the time of the last `touch`

 private:
  Collection collection_;
  std::vector<Piece> pieces_; // one per name of a fragment
  SaveableAttributes attributes_;
  std::uint64_t changed_ = 0;
};

} // namespace Nimbra
