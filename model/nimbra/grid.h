// SPDX-License-Identifier: BSD-3-Clause
// The grid: named representations with their fields, and attributes.
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

/// Reference to a slot of a representation. It converts to the field in the slot, and an assignment replaces
/// the field. It must not outlive the representation.
class TORVEL_API FieldProxy {
 public:
  explicit FieldProxy(Field::Pointer& slot);
  FieldProxy(const FieldProxy&) = default;
  ~FieldProxy();

  /// \return the field in the slot, an empty pointer where there is none
  operator Field::Pointer&() const; // NOLINT(google-explicit-constructor): an interface
  /// Puts a field in the slot, in place of the one there.
  FieldProxy& operator=(const Field::Pointer& field);
  FieldProxy& operator=(const FieldProxy&) = delete;

 private:
  Field::Pointer* place;
};

/// A coordinate system of a grid with its fields, in order of creation.
///
/// \threads not safe: one thread at a time
class TORVEL_API Representation : public Torvel::ReferenceBase<Representation> {
 public:
  /// A place for a field: empty until makeField or an assignment fills it.
  struct Slot {
    Torvel::StrongPtr<FieldID, FieldID> identity;
    Field::Pointer field;
  };

  Representation(const std::string& name, int dimensions);
  ~Representation() override;

  /// Makes or finds the identity of a field name.
  /// \return lives as long as the representation
  /// \errors  std::bad_alloc
  Torvel::WeakPtr<FieldID, FieldID> makeFieldID(const std::string& name);

  /// Makes a field in its slot. A slot with a field is returned as it is, whatever else is passed.
  ///
  /// \param identity  from `makeFieldID` of this representation
  /// \param collection  of the new field; null makes a new one
  /// \param array  data of the new field's fragment ""; null for none
  /// \return the slot
  /// \errors  std::invalid_argument where `identity` is not from this representation; std::bad_alloc
  FieldProxy makeField(const Torvel::WeakPtr<FieldID, FieldID>& identity,
                       const Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection>& collection,
                       const MemBase::Pointer& array);

  const std::string& name() const { return representationName; }
  int dimensions() const { return dimensionCount; }
  /// \return the slots in order of creation; the slot of an identity without a field is empty
  const std::deque<Slot>& fields() const { return slots; }
  /// \return a field by name, null where there is none
  Field::Pointer field(const std::string& name) const;

 private:
  const std::string representationName;
  const int dimensionCount;
  std::deque<Slot> slots;
};

/// The data of a scene: representations in order of creation, and attributes. Owned by the host.
///
/// \threads not safe: one thread at a time
class TORVEL_API Grid : public Ownable<BaseSpace, ChildrenProperties>::Container,
                        public Ownable<Grid, ChildrenProperties>,
                        public BaseSpace,
                        public Torvel::Intercube {
 public:
  using Family = Ownable<BaseSpace, ChildrenProperties>::Container;
  using RepresentationPointer = Torvel::StrongPtr<Representation, Representation>;

  Grid();
  ~Grid() override;

  /// Makes the Cartesian representation of that name, or returns the existing one.
  ///
  /// \param dimensions  of the space, 3 for points; not used where the representation exists
  /// \param chart  which chart of that name; there is only chart 0
  /// \return owned by the grid, lives as long as it
  /// \errors  std::bad_alloc
  Representation& makeCartesianRepresentation(int dimensions, const std::string& name, unsigned short chart);
  /// \return a representation by name, null where there is none
  RepresentationPointer getCartesianRepresentation(const std::string& name) const;

  /// \return the slot of a field in the representation "StandardCartesianChart3D"; both are made where they
  /// are missing
  /// \errors  std::bad_alloc
  FieldProxy operator[](const std::string& name);

  /// \return all representations in order of creation
  const std::deque<RepresentationPointer>& representations() const { return charts; }

  /// \return the grid's attributes; they live as long as the grid
  SaveableAttributes& attributes() { return saveable; }
  const SaveableAttributes& attributes() const { return saveable; }

 private:
  std::deque<RepresentationPointer> charts;
  SaveableAttributes saveable;
};

} // namespace Nimbra
