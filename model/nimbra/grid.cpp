// SPDX-License-Identifier: BSD-3-Clause
// Makes and finds representations and the slots of fields.
#include "model/nimbra/grid.h"

#include <algorithm>
#include <stdexcept>

namespace Nimbra {

namespace {

const char* const defaultRepresentation = "StandardCartesianChart3D";
constexpr int defaultDimensions = 3;

} // namespace

FieldID::FieldID(const std::string& name) : Torvel::ReferenceBase<FieldID>(this), fieldName(name) {}
FieldID::~FieldID() = default;

FieldProxy::FieldProxy(Field::Pointer& slot) : place(&slot) {}
FieldProxy::~FieldProxy() = default;

FieldProxy::operator Field::Pointer&() const {
  return *place;
}

FieldProxy& FieldProxy::operator=(const Field::Pointer& field) {
  *place = field;
  return *this;
}

Representation::Representation(const std::string& name, int dimensions)
    : Torvel::ReferenceBase<Representation>(this), representationName(name), dimensionCount(dimensions) {}

Representation::~Representation() = default;

Torvel::WeakPtr<FieldID, FieldID> Representation::makeFieldID(const std::string& name) {
  const auto found = std::find_if(slots.begin(), slots.end(),
                                  [&name](const Slot& slot) { return slot.identity->name() == name; });
  if (found != slots.end()) {
    return found->identity;
  }
  return slots.emplace_back(Slot{new FieldID(name), nullptr}).identity;
}

FieldProxy
Representation::makeField(const Torvel::WeakPtr<FieldID, FieldID>& identity,
                          const Torvel::StrongPtr<FragmentIDCollection, FragmentIDCollection>& collection,
                          const MemBase::Pointer& array) {
  const auto found = std::find_if(slots.begin(), slots.end(),
                                  [&identity](const Slot& slot) { return slot.identity == identity; });
  if (found == slots.end()) {
    throw std::invalid_argument("representation \"" + representationName +
                                "\": expected an identity that its makeFieldID gave, found another one");
  }
  if (!found->field) {
    found->field = new Field(collection ? collection : new FragmentIDCollection);
    if (array) {
      found->field->setPersistentData(array, found->field->makeFragmentID(""), Torvel::Cache::MemCache(), "");
    }
  }
  return FieldProxy(found->field);
}

Field::Pointer Representation::field(const std::string& name) const {
  const auto found = std::find_if(slots.begin(), slots.end(),
                                  [&name](const Slot& slot) { return slot.identity->name() == name; });
  return found != slots.end() ? found->field : Field::Pointer();
}

Grid::Grid() = default;
Grid::~Grid() = default;

Representation& Grid::makeCartesianRepresentation(int dimensions, const std::string& name, unsigned short) {
  const RepresentationPointer known = getCartesianRepresentation(name);
  return known ? *known : *charts.emplace_back(new Representation(name, dimensions));
}

Grid::RepresentationPointer Grid::getCartesianRepresentation(const std::string& name) const {
  const auto found = std::find_if(charts.begin(), charts.end(),
                                  [&name](const auto& chart) { return chart->name() == name; });
  return found != charts.end() ? *found : RepresentationPointer();
}

FieldProxy Grid::operator[](const std::string& name) {
  Representation& chart = makeCartesianRepresentation(defaultDimensions, defaultRepresentation, 0);
  return chart.makeField(chart.makeFieldID(name), nullptr, nullptr);
}

} // namespace Nimbra
