// SPDX-License-Identifier: BSD-3-Clause
// Plain sequences of scalars: the layout that points, vectors and colours share.
//
// The types are exported, so that templates of them (chunks, arrays, type objects) are one type in all shared
// objects of a process.
#pragma once

#include "model/torvel/references/typed_chunk.h"

#include <cstddef>

namespace Quillon {

/// `Count` consecutive scalars and no other member. A new one isn't initialised.
///
/// \threads not protected, like all types of this room
template <class Scalar, int Count>
class TORVEL_API FixedArray {
 public:
  // Not defaulted: a buffer of millions of elements must not be zeroed before it is filled.
  FixedArray() {} // NOLINT(modernize-use-equals-default)

  /// \param index  from 0, below `Count`; not checked
  Scalar& operator[](std::size_t index) { return scalars[index]; }
  const Scalar& operator[](std::size_t index) const { return scalars[index]; }
  Scalar* begin() { return scalars; }
  const Scalar* begin() const { return scalars; }
  Scalar* end() { return scalars + Count; }
  const Scalar* end() const { return scalars + Count; }
  static constexpr std::size_t size() { return Count; }

 private:
  Scalar scalars[Count];
};

template <class Scalar, int Count>
bool operator==(const FixedArray<Scalar, Count>& left, const FixedArray<Scalar, Count>& right) {
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (!(left[i] == right[i])) {
      return false;
    }
  }
  return true;
}

/// A sequence whose scalars are the components of a vector.
template <class Scalar, int Count>
class TORVEL_API Vector : public FixedArray<Scalar, Count> {
 public:
  Vector() {} // NOLINT(modernize-use-equals-default): as FixedArray
};

/// A matrix of `Rows` times `Columns` scalars.
template <int Rows, int Columns, class Scalar>
class TORVEL_API Matrix : public Vector<Scalar, Rows * Columns> {
 public:
  Matrix() {} // NOLINT(modernize-use-equals-default)
};

/// A matrix of one column.
template <int Rows, class Scalar>
class TORVEL_API Column : public Matrix<Rows, 1, Scalar> {
 public:
  Column() {} // NOLINT(modernize-use-equals-default)
};

} // namespace Quillon

namespace Torvel {

// Chunks of these layouts don't exist. They only give access to chunks of elements that derive from them.
template <class Scalar, int Count>
struct ElementLayout<Quillon::FixedArray<Scalar, Count>> {
  using Base = void;
  static constexpr bool storable = false;
};

template <class Scalar, int Count>
struct ElementLayout<Quillon::Vector<Scalar, Count>> {
  using Base = Quillon::FixedArray<Scalar, Count>;
  static constexpr bool storable = false;
};

template <int Rows, int Columns, class Scalar>
struct ElementLayout<Quillon::Matrix<Rows, Columns, Scalar>> {
  using Base = Quillon::Vector<Scalar, Rows * Columns>;
  static constexpr bool storable = false;
};

template <int Rows, class Scalar>
struct ElementLayout<Quillon::Column<Rows, Scalar>> {
  using Base = Quillon::Matrix<Rows, 1, Scalar>;
  static constexpr bool storable = false;
};

} // namespace Torvel
