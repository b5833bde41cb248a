// SPDX-License-Identifier: BSD-3-Clause
// The eleven element types and their records.
#pragma once

#include "arrays/quillon/physical_space.h"
#include "model/nimbra/type_base.h"
#include "model/torvel/core/typename.h"

#include <tuple>

namespace Nimbra {

/// Properties of an element type that its record states: scalar, domain (void for a plain scalar), the two
/// flags and the dimensions of the domain.
template <class T>
struct ElementTraits {
  using Scalar = T;
  using Domain = void;
  static constexpr int vectorFlagA = 0;
  static constexpr int vectorFlagB = 0;
  static constexpr int dimensions = 0;
};

template <>
struct ElementTraits<Quillon::PhysicalSpace::point> {
  using Scalar = double;
  using Domain = Quillon::Cartesian3D;
  static constexpr int vectorFlagA = 0;
  static constexpr int vectorFlagB = 0;
  static constexpr int dimensions = 3;
};

template <>
struct ElementTraits<Quillon::PhysicalSpace::vector> {
  using Scalar = double;
  using Domain = Quillon::Cartesian3D;
  static constexpr int vectorFlagA = 1;
  static constexpr int vectorFlagB = 1;
  static constexpr int dimensions = 3;
};

template <>
struct ElementTraits<Quillon::ColourRGBA> {
  using Scalar = unsigned char;
  using Domain = Quillon::RGBA;
  static constexpr int vectorFlagA = 1;
  static constexpr int vectorFlagB = 0;
  static constexpr int dimensions = 4;
};

/// Scalars per element.
template <class T>
inline constexpr int componentCount = static_cast<int>(sizeof(T) / sizeof(typename ElementTraits<T>::Scalar));

/// \return the record of an element type
/// \errors  std::bad_alloc
/// \threads safe
template <class T>
NimbraTypeIndex elementRecord() {
  using Traits = ElementTraits<T>;
  NimbraTypeIndex record;
  record.components = componentCount<T>;
  record.elementBytes = static_cast<std::int32_t>(sizeof(T));
  record.vectorFlagA = Traits::vectorFlagA;
  record.vectorFlagB = Traits::vectorFlagB;
  record.componentBytes = static_cast<std::int32_t>(sizeof(typename Traits::Scalar));
  record.typeName = Torvel::Typename(typeid(T));
  record.componentName = Torvel::Typename(typeid(typename Traits::Scalar));
  record.chartName = Torvel::Typename(typeid(typename Traits::Domain));
  record.dimensions = Traits::dimensions;
  return record;
}

/// The element types in the order in which the library registers them.
using ElementTypes =
    std::tuple<Quillon::PhysicalSpace::point, double, Quillon::PhysicalSpace::vector, float, short,
               unsigned char, Quillon::ColourRGBA, unsigned short, unsigned long long, int, unsigned int>;

} // namespace Nimbra
