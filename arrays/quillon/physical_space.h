// SPDX-License-Identifier: BSD-3-Clause
// Points, vectors and colours: the composed element types of a column.
#pragma once

#include "arrays/quillon/fixed_array.h"

namespace Quillon {

/// Tag of three-dimensional Cartesian space.
struct TORVEL_API Cartesian3D {};
/// Tag of colours with three channels: red, green, blue.
struct TORVEL_API RGB {};
/// Tag of colours with four channels: red, green, blue, opacity.
struct TORVEL_API RGBA : RGB {};

/// A vector with the tag of its domain.
template <class Base, class Domain, class Scalar>
class TORVEL_API DomainVector : public Base {
 public:
  using Chart = Domain;
  DomainVector() {} // NOLINT(modernize-use-equals-default): a buffer of colours isn't zeroed
};

/// The element types of a chart.
template <class Domain, class Scalar>
struct TORVEL_API Coordinates {
  /// A position: three scalars x, y, z.
  class TORVEL_API point : public FixedArray<Scalar, 3> {
   public:
    using Chart = Domain;
    point() {} // NOLINT(modernize-use-equals-default): a buffer of points isn't zeroed
    point(Scalar x, Scalar y, Scalar z) {
      (*this)[0] = x;
      (*this)[1] = y;
      (*this)[2] = z;
    }
  };

  /// A direction or a displacement: three scalars x, y, z.
  class TORVEL_API vector : public DomainVector<Column<3, Scalar>, Domain, Scalar> {
   public:
    vector() {} // NOLINT(modernize-use-equals-default): a buffer of vectors isn't zeroed
    vector(Scalar x, Scalar y, Scalar z) {
      (*this)[0] = x;
      (*this)[1] = y;
      (*this)[2] = z;
    }
  };
};

/// The space of scanners and platforms, in metres or in the unit of the projected coordinate system.
namespace PhysicalSpace {
using point = Coordinates<Cartesian3D, double>::point;
using vector = Coordinates<Cartesian3D, double>::vector;
} // namespace PhysicalSpace

/// A colour of four 8-bit channels: red, green, blue, opacity.
using ColourRGBA = DomainVector<Vector<unsigned char, 4>, RGBA, unsigned char>;

static_assert(sizeof(PhysicalSpace::point) == 3 * sizeof(double));
static_assert(sizeof(PhysicalSpace::vector) == 3 * sizeof(double));
static_assert(sizeof(ColourRGBA) == 4);

} // namespace Quillon

namespace Torvel {

template <>
struct ElementLayout<Quillon::PhysicalSpace::point> {
  using Base = Quillon::FixedArray<double, 3>;
  static constexpr bool storable = true;
};

template <>
struct ElementLayout<Quillon::DomainVector<Quillon::Column<3, double>, Quillon::Cartesian3D, double>> {
  using Base = Quillon::Column<3, double>;
  static constexpr bool storable = false;
};

template <>
struct ElementLayout<Quillon::PhysicalSpace::vector> {
  using Base = Quillon::DomainVector<Quillon::Column<3, double>, Quillon::Cartesian3D, double>;
  static constexpr bool storable = true;
};

template <>
struct ElementLayout<Quillon::ColourRGBA> {
  using Base = Quillon::Vector<unsigned char, 4>;
  static constexpr bool storable = true;
};

} // namespace Torvel
