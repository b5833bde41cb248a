// SPDX-License-Identifier: BSD-3-Clause
// Grid, representations, fields and their attributes.
#include "model/nimbra/grid.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>

void Torvel::Attributes::setAttribute(const std::string& name, const Value& chunk) {
  const auto found =
      std::find_if(entries_.begin(), entries_.end(), [&](const auto& entry) { return entry.first == name; });
  if (found != entries_.end()) {
    found->second = chunk;
  } else {
    entries_.emplace_back(name, chunk);
  }
}

namespace Nimbra {

namespace {

constexpr const char* defaultChart = "StandardCartesianChart3D";

std::uint64_t nextTick() {
  static std::atomic<std::uint64_t> clock{0};
  return clock.fetch_add(1) + 1;
}

} // namespace

FragmentID::FragmentID(std::string name) : Torvel::ReferenceBase<FragmentID>(this), name_(std::move(name)) {}
FragmentID::~FragmentID() = default;

FragmentIDCollection::FragmentIDCollection() : Torvel::ReferenceBase<FragmentIDCollection>(this) {}
FragmentIDCollection::~FragmentIDCollection() = default;

const Torvel::StrongPtr<FragmentID, FragmentID>& FragmentIDCollection::make(const std::string& name) {
  for (const auto& member : members_) {
    if (member->name() == name) {
      return member;
    }
  }
  return members_.emplace_back(new FragmentID(name));
}

Field::Field(const Collection& collection)
    : collection_(collection ? collection : Collection(new FragmentIDCollection)) {}
Field::~Field() = default;

void Field::setPersistentData(const MemBase::Pointer& array, const Fragment& fragment,
                              const Torvel::StrongPtr<Torvel::Cache, Torvel::CacheBase>&,
                              const std::string&) {
  const auto found = std::find_if(pieces_.begin(), pieces_.end(), [&](const Piece& piece) {
    return piece.fragment->name() == fragment->name();
  });
  if (found != pieces_.end()) {
    *found = {fragment, array};
  } else {
    pieces_.push_back({fragment, array});
  }
  touch();
}

void Field::touch() {
  changed_ = nextTick();
}

FieldID::FieldID(std::string name) : Torvel::ReferenceBase<FieldID>(this), name_(std::move(name)) {}
FieldID::~FieldID() = default;

FieldProxy::FieldProxy(std::shared_ptr<FieldPlace> place) : place_(std::move(place)) {}
FieldProxy::FieldProxy(const FieldProxy&) = default;
FieldProxy::~FieldProxy() = default;
FieldProxy& FieldProxy::operator=(const Field::Pointer& field) {
  place_->field = field;
  return *this;
}
FieldProxy::operator Field::Pointer&() const {
  return place_->field;
}

Representation::Representation(std::string name)
    : Torvel::ReferenceBase<Representation>(this), name_(std::move(name)) {}
Representation::~Representation() = default;

Torvel::WeakPtr<FieldID, FieldID> Representation::makeFieldID(const std::string& name) {
  for (const auto& place : places_) {
    if (place->identity->name() == name) {
      return place->identity;
    }
  }
  places_.push_back(std::make_shared<FieldPlace>(FieldPlace{new FieldID(name), nullptr}));
  return places_.back()->identity;
}

FieldProxy Representation::makeField(const Torvel::WeakPtr<FieldID, FieldID>& identity,
                                     const Field::Collection& collection, const MemBase::Pointer& array) {
  const auto found = std::find_if(places_.begin(), places_.end(),
                                  [&](const auto& place) { return place->identity.get() == identity.get(); });
  if (found == places_.end()) {
    throw std::invalid_argument("the field identity is of another representation");
  }
  Field::Pointer& field = (*found)->field;
  if (!field) {
    field = new Field(collection);
    if (array) {
      field->setPersistentData(array, field->makeFragmentID(""), Torvel::Cache::MemCache(), "");
    }
  }
  return FieldProxy(*found);
}

Grid::Grid() = default;
Grid::~Grid() = default;

Representation& Grid::makeCartesianRepresentation(int, const std::string& name, unsigned short) {
  if (const auto known = getCartesianRepresentation(name)) {
    return *known;
  }
  return *representations_.emplace_back(new Representation(name));
}

Torvel::StrongPtr<Representation, Representation>
Grid::getCartesianRepresentation(const std::string& name) const {
  for (const auto& representation : representations_) {
    if (representation->name() == name) {
      return representation;
    }
  }
  return nullptr;
}

FieldProxy Grid::operator[](const std::string& name) {
  Representation& chart = makeCartesianRepresentation(3, defaultChart, 0);
  return chart.makeField(chart.makeFieldID(name), nullptr, nullptr);
}

} // namespace Nimbra
