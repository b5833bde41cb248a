// SPDX-License-Identifier: BSD-3-Clause
// Reads fields, fragments and attributes of a grid for a test.
#pragma once

#include "arrays/nimbra/mem_array.h"
#include "model/nimbra/grid.h"

#include <string>
#include <vector>

namespace support {

inline const char* const chart = "StandardCartesianChart3D";
inline const char* const scanner = "ScannerCoordinateSystem";

/// The field, null where there is none.
inline Nimbra::Field::Pointer field(const Nimbra::Grid& grid, const std::string& name,
                                    const std::string& representation = chart) {
  const auto found = grid.getCartesianRepresentation(representation);
  return found ? found->field(name) : Nimbra::Field::Pointer();
}

/// Names of the fields of a representation, in order of creation.
inline std::vector<std::string> fieldNames(const Nimbra::Grid& grid,
                                           const std::string& representation = chart) {
  std::vector<std::string> names;
  if (const auto found = grid.getCartesianRepresentation(representation)) {
    for (const auto& slot : found->fields()) {
      names.push_back(slot.identity->name());
    }
  }
  return names;
}

inline std::vector<std::string> representationNames(const Nimbra::Grid& grid) {
  std::vector<std::string> names;
  for (const auto& representation : grid.representations()) {
    names.push_back(representation->name());
  }
  return names;
}

/// Names of the fragments of a field that have data, in order.
inline std::vector<std::string> fragmentNames(const Nimbra::Field::Pointer& field) {
  std::vector<std::string> names;
  for (const auto& fragment : field->fragments()) {
    names.push_back(fragment.identity->name());
  }
  return names;
}

/// The chunk of a fragment; null where the fragment is missing or has another element type.
template <class T>
Torvel::StrongPtr<Torvel::Chunk<T>, Torvel::ChunkBase> chunkOf(const Nimbra::Field::Pointer& field,
                                                               const std::string& fragment) {
  const Nimbra::MemBase::Pointer array = field ? field->array(fragment) : Nimbra::MemBase::Pointer();
  return array ? array->chunkBase() : Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>();
}

/// The values of a fragment; empty where the fragment is missing or has another element type.
template <class T>
std::vector<T> values(const Nimbra::Field::Pointer& field, const std::string& fragment) {
  const auto chunk = chunkOf<T>(field, fragment);
  return chunk ? chunk->values() : std::vector<T>();
}

/// Names of attributes in order of creation.
inline std::vector<std::string> attributeNames(const Torvel::Attributes& attributes) {
  std::vector<std::string> names;
  for (const auto& attribute : attributes) {
    names.push_back(attribute.name);
  }
  return names;
}

/// The values of an attribute; empty where it is missing or has another type.
template <class T>
std::vector<T> attributeValues(const Torvel::Attributes& attributes, const std::string& name) {
  const Torvel::StrongPtr<Torvel::Chunk<T>, Torvel::ChunkBase> chunk(attributes.getAttribute(name));
  return chunk ? chunk->values() : std::vector<T>();
}

} // namespace support
