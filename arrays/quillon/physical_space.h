// SPDX-License-Identifier: BSD-3-Clause
// Points, vectors and colours: the composed element types of a column.
#pragma once

#include "arrays/quillon/fixed_array.h"

namespace Quillon {

/// Three-dimensional Cartesian space. Only a tag.
struct TORVEL_API Cartesian3D {};
/// Colours of three channels, red, green and blue. Only a tag.
struct TORVEL_API RGB {};
/// Colours of four channels: red, green, blue and opacity. Only a tag.
struct TORVEL_API RGBA : RGB {};

/// A vector that lives in a domain.
template <class Base, class Domain, class Scalar>
class TORVEL_API DomainVector : public Base {
 public:
  using Chart = Domain;
  DomainVector() {} // NOLINT(modernize-use-equals-default): a buffer of colours isn't zeroed
};

/// The element types of a chart.
template <class Domain, class Scalar>
struct TORVEL_API Coordinates {
  /// A position: three scalars.
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

  /// A direction or a displacement: three scalars.
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

/// The space that scanners and platforms move in; metres, or what the target system of a projection says.
namespace PhysicalSpace {
using point = Coordinates<Cartesian3D, double>::point;
using vector = Coordinates<Cartesian3D, double>::vector;
} // namespace PhysicalSpace

/// A colour of four 8-bit channels.
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
