// SPDX-License-Identifier: BSD-3-Clause
// Tries scales and offsets on a sample of each component, then on all its values.
//
// Values v = i * s + b, rounded twice, often have another pair (s, c) that gives them back: where c is a whole number
// near the values, i * s is small, its rounding error is far below the last bit of v, and v is simply the float64 next to a
// decimal number. So the offset of the source need not be found, only a round number in the neighbourhood. Values
// that reach down to 0 need the offset of the source itself, which then mostly is 0.
#include "container/codec/scaling_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>

namespace container::codec {
namespace {

constexpr std::uint64_t sampleValues = 512;
// A candidate that the sample lets pass, and one value among all refuses, costs up to a pass over the block.
constexpr int mostPasses = 8;
constexpr std::array scales{1.0, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6, 1e-7};
constexpr std::array roundings{1e6, 1e5, 1e4, 1e3, 1e2, 1e1, 1e0};

/// The values of one component, and some of them side by side as a sample.
class Component {
 public:
  Component(const std::byte* first, std::size_t strideBytes, std::uint64_t valueCount,
            ValueFormat valueFormat)
      : values(first), stride(strideBytes), count(valueCount), format(valueFormat) {
    const std::uint64_t step = std::max<std::uint64_t>(count / sampleValues, 1);
    for (std::uint64_t i = 0; i < count; i += step) {
      addToSample(i);
    }
  }

  bool sampleFits(const Scaling& scaling) const {
    const std::uint64_t many = sample.size() / format.bytes;
    return firstValueLost(scaling, format, sample.data(), format.bytes, many) == many;
  }

  /// The first value that does not come back becomes one of the sample.
  bool allFit(const Scaling& scaling) {
    const std::uint64_t lost = firstValueLost(scaling, format, values, stride, count);
    if (lost < count) {
      addToSample(lost);
    }
    return lost == count;
  }

  /// Offsets worth trying, the most likely first.
  std::vector<double> offsets() const {
    const double first = sampleValue(0);
    double least = first;
    double greatest = first;
    for (std::size_t i = 0; i < sample.size() / format.bytes; ++i) {
      least = std::min(least, sampleValue(i));
      greatest = std::max(greatest, sampleValue(i));
    }
    std::vector<double> found{0};
    for (const double unit : roundings) {
      found.push_back(std::nearbyint((least / 2 + greatest / 2) / unit) * unit);
      found.push_back(std::floor(least / unit) * unit);
    }
    found.push_back(first);
    found.push_back(least);
    return found;
  }

 private:
  void addToSample(std::uint64_t index) {
    const std::byte* value = values + index * stride;
    sample.insert(sample.end(), value, value + format.bytes);
  }

  double sampleValue(std::size_t index) const {
    if (format.bytes == sizeof(float)) {
      float single;
      std::memcpy(&single, &sample[index * sizeof single], sizeof single);
      return static_cast<double>(single);
    }
    double number;
    std::memcpy(&number, &sample[index * sizeof number], sizeof number);
    return number;
  }

  const std::byte* values;
  std::size_t stride;
  std::uint64_t count;
  ValueFormat format;
  std::vector<std::byte> sample;
};

std::optional<Scaling> searched(Component& component) {
  int passes = 0;
  const std::vector<double> offsets = component.offsets();
  for (const double scale : scales) {
    for (const double offset : offsets) {
      const Scaling candidate{scale, offset};
      if (!isUsable(candidate) || !component.sampleFits(candidate)) {
        continue;
      }
      if (component.allFit(candidate)) {
        return candidate;
      }
      if (++passes == mostPasses) {
        return std::nullopt;
      }
    }
  }
  return std::nullopt;
}

} // namespace

std::optional<std::vector<Scaling>> findScaling(const std::byte* records, const BlockShape& shape,
                                                std::span<const Scaling> hint) {
  if (!hint.empty() && hint.size() != shape.length) {
    throw std::invalid_argument("hint of scales: expected " + std::to_string(shape.length) +
                                " components, found " + std::to_string(hint.size()));
  }
  if (shape.format.kind != NumberKind::real || shape.records == 0) {
    return std::nullopt;
  }
  std::vector<Scaling> found;
  const std::size_t recordBytes = static_cast<std::size_t>(shape.length) * shape.format.bytes;
  for (std::size_t c = 0; c < shape.length; ++c) {
    Component component(records + c * shape.format.bytes, recordBytes, shape.records, shape.format);
    const bool takesHint = !hint.empty() && isUsable(hint[c]) && component.sampleFits(hint[c]);
    const auto scaling =
        takesHint && component.allFit(hint[c]) ? std::optional(hint[c]) : searched(component);
    if (!scaling) {
      return std::nullopt;
    }
    found.push_back(*scaling);
  }
  return found;
}

} // namespace container::codec
