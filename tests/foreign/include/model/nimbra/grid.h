// SPDX-License-Identifier: BSD-3-Clause
// The data of a scene: representations of fields.
#pragma once

#include "quarry/model/field.h"

#include <memory>

namespace Nimbra {

class TORVEL_API FieldID : public Torvel::ReferenceBase<FieldID> {
 public:
  explicit FieldID(std::string name);
  ~FieldID() override;
  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

/// The place of a field in a representation. A proxy of it keeps it, not the representation.
struct FieldPlace {
  Torvel::StrongPtr<FieldID, FieldID> identity;
  Field::Pointer field;
};

class TORVEL_API FieldProxy {
 public:
  explicit FieldProxy(std::shared_ptr<FieldPlace> place);
  FieldProxy(const FieldProxy&);
  ~FieldProxy();
  FieldProxy& operator=(const FieldProxy&) = delete; // either meaning would surprise someone
  FieldProxy& operator=(const Field::Pointer& field);
  operator Field::Pointer&() const;

 private:
  std::shared_ptr<FieldPlace> place_;
};

class TORVEL_API Representation : public Torvel::ReferenceBase<Representation> {
 public:
  explicit Representation(std::string name);
  ~Representation() override;
  Torvel::WeakPtr<FieldID, FieldID> makeFieldID(const std::string& name);
  FieldProxy makeField(const Torvel::WeakPtr<FieldID, FieldID>& identity, const Field::Collection& collection,
                       const MemBase::Pointer& array);

  const std::string& name() const { return name_; }
  const std::vector<std::shared_ptr<FieldPlace>>& places() const { return places_; }

 private:
  std::string name_;
  std::vector<std::shared_ptr<FieldPlace>> places_; // in order of creation, some may be empty
};

class TORVEL_API Grid : public Ownable<BaseSpace, ChildrenProperties>::Container {
 public:
  using Pointer = Torvel::StrongPtr<Grid, Ownable<BaseSpace, ChildrenProperties>::Container>;

  Grid();
  ~Grid() override;
  Representation& makeCartesianRepresentation(int dimensions, const std::string& name, unsigned short chart);
  Torvel::StrongPtr<Representation, Representation> getCartesianRepresentation(const std::string& name) const;
  FieldProxy operator[](const std::string& name);
  SaveableAttributes& attributes() { return attributes_; }

  const std::vector<Torvel::StrongPtr<Representation, Representation>>& representations() const {
    return representations_;
  }

 private:
  std::vector<Torvel::StrongPtr<Representation, Representation>> representations_;
  SaveableAttributes attributes_;
};

} // namespace Nimbra
