// SPDX-License-Identifier: BSD-3-Clause
// The grid: named representations, each with its fields, and attributes of its own.
#pragma once

#include "model/nimbra/field.h"
#include "model/nimbra/ownable.h"

#include <deque>
#include <string>

namespace Nimbra {

/// Identity of a field name inside a representation.
class TORVEL_API FieldID : public Torvel::ReferenceBase<FieldID> {
 public:
  explicit FieldID(const std::string& name);
  ~FieldID() override;
  const std::string& name() const { return fieldName; }

 private:
  const std::string fieldName;
};

/// Names a slot of a representation: reads as the field in it, and takes another one by assignment. It must
/// not outlive the representation.
class TORVEL_API FieldProxy {
 public:
  explicit FieldProxy(Field::Pointer& slot);
  FieldProxy(const FieldProxy&) = default;
  ~FieldProxy();

  /// The field in the slot.
  operator Field::Pointer&() const; // NOLINT(google-explicit-constructor): reads like the field
  /// Puts a field in the slot.
  FieldProxy& operator=(const Field::Pointer& field);
  FieldProxy& operator=(const FieldProxy&) = delete;

 private:
  Field::Pointer* place;
};

/// A coordinate system of a grid with the fields that are given in it, in order of creation.
class TORVEL_API Representation : public Torvel::ReferenceBase<Representation> {
 public:
  /// A place for a field: empty until makeField or an assignment fills it.
  struct Slot {
    Torvel::StrongPtr<FieldID, FieldID> identity;
    Field::Pointer field;
  };

  Representation(const std::string& name, int dimensions);
  ~Representation() override;

  /// The identity of `name` here, made if new. It lives as long as the representation.
  Torvel::WeakPtr<FieldID, FieldID> makeFieldID(const std::string& name);

  /// The slot of a field. A slot that holds a field already is handed back as it is, whatever else is passed;
  /// a new field lies over `collection`, or over a collection of its own where that is null. Where `array`
  /// isn't null it becomes the data of the new field's fragment "".
  ///
  /// \errors  std::invalid_argument where `identity` is no identity of this representation
  FieldProxy makeField(const Torvel::WeakPtr<FieldID, FieldID>& identity,
                       const Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection>& collection,
                       const MemBase::Pointer& array);

  const std::string& name() const { return representationName; }
  int dimensions() const { return dimensionCount; }
  /// The fields in order of creation; an identity without a field has an empty slot.
  const std::deque<Slot>& fields() const { return slots; }
  /// A field by name, null where there is none.
  Field::Pointer field(const std::string& name) const;

 private:
  const std::string representationName;
  const int dimensionCount;
  std::deque<Slot> slots;
};

/// The data of a scene: representations in order of creation, and attributes. Owned by the host.
///
/// \threads none: one thread at a time
class TORVEL_API Grid : public Ownable<BaseSpace, ChildrenProperties>::Container,
                        public Ownable<Grid, ChildrenProperties>,
                        public BaseSpace,
                        public Torvel::Intercube {
 public:
  using Family = Ownable<BaseSpace, ChildrenProperties>::Container;
  using RepresentationPointer = Torvel::StrongPtr<Representation, Representation>;

  Grid();
  ~Grid() override;

  /// Makes the Cartesian representation of that name, or hands back the one there is.
  /// \param chart  which chart of that name; there is only chart 0
  Representation& makeCartesianRepresentation(int dimensions, const std::string& name, unsigned short chart);
  /// A representation by name, null where there is none.
  RepresentationPointer getCartesianRepresentation(const std::string& name) const;

  /// The slot of a field in the default place, the representation "StandardCartesianChart3D"; both are made
  /// when first asked for.
  FieldProxy operator[](const std::string& name);

  /// All representations in order of creation.
  const std::deque<RepresentationPointer>& representations() const { return charts; }

  /// The grid's own attributes; they live as long as it.
  SaveableAttributes& attributes() { return saveable; }
  const SaveableAttributes& attributes() const { return saveable; }

 private:
  std::deque<RepresentationPointer> charts;
  SaveableAttributes saveable;
};

} // namespace Nimbra
