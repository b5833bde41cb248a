// SPDX-License-Identifier: BSD-3-Clause
// Blocks that the tests of the encodings share, made from a seed.
#pragma once

#include "container/codec/piece_encoder.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace blocks {

using container::NumberKind;
using container::ValueFormat;
using container::codec::BlockShape;
using container::codec::Codec;
using container::codec::Filter;
using container::codec::Scaling;

using Bytes = std::vector<std::byte>;

inline constexpr std::array<ValueFormat, 10> everyFormat{{
    {NumberKind::signedInteger, 1},
    {NumberKind::signedInteger, 2},
    {NumberKind::signedInteger, 4},
    {NumberKind::signedInteger, 8},
    {NumberKind::unsignedInteger, 1},
    {NumberKind::unsignedInteger, 2},
    {NumberKind::unsignedInteger, 4},
    {NumberKind::unsignedInteger, 8},
    {NumberKind::real, 4},
    {NumberKind::real, 8},
}};
inline constexpr std::array<Filter, 3> everyFilter{Filter::none, Filter::shuffle, Filter::deltaAndShuffle};
inline constexpr std::array<Codec, 3> everyCodec{Codec::none, Codec::zlib, Codec::lz4};

/// The bytes of some values, side by side.
template <class T>
Bytes bytesOf(const std::vector<T>& values) {
  Bytes bytes(values.size() * sizeof(T));
  if (!bytes.empty()) {
    std::memcpy(bytes.data(), values.data(), bytes.size());
  }
  return bytes;
}

inline Bytes randomBytes(std::size_t count, unsigned seed = 1) {
  std::mt19937 random(seed);
  Bytes bytes(count);
  for (std::byte& byte : bytes) {
    byte = static_cast<std::byte>(random() & 0xff);
  }
  return bytes;
}

/// Bytes that compress: few different ones, in runs.
inline Bytes smoothBytes(std::size_t count) {
  Bytes bytes(count);
  for (std::size_t i = 0; i < count; ++i) {
    bytes[i] = static_cast<std::byte>(i / 37 % 11);
  }
  return bytes;
}

/// Real values of a grid: integers of a wide range x scale + offset, rounded as the file format says.
template <class Real>
std::vector<Real> gridValues(const std::vector<Scaling>& scaling, std::size_t records, int range = 2000000) {
  std::mt19937 random(3);
  std::uniform_int_distribution<std::int32_t> integers(-range, range);
  std::vector<Real> values;
  for (std::size_t r = 0; r < records; ++r) {
    for (const Scaling& component : scaling) {
      const double product = static_cast<double>(integers(random)) * component.scale;
      values.push_back(static_cast<Real>(product + component.offset));
    }
  }
  return values;
}

/// A block in the encoding `pieces`.
inline Bytes encoded(const Bytes& records, const BlockShape& shape,
                     const container::codec::EncodingOptions& options) {
  return container::codec::encodeBlock(records.data(), shape, options);
}

inline std::size_t recordBytes(const BlockShape& shape) {
  return shape.length * shape.format.bytes;
}

/// "int16" and so on, as the catalogue names a type.
inline std::string nameOf(const ValueFormat& format) {
  const std::string kind = format.kind == NumberKind::real            ? "float"
                           : format.kind == NumberKind::signedInteger ? "int"
                                                                      : "uint";
  return kind + std::to_string(format.bytes * 8);
}

} // namespace blocks
