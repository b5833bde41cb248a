// SPDX-License-Identifier: BSD-3-Clause
// Encodes a sample of a block in every way.
#include "container/codec/encoding_choice.h"

#include "container/codec/scaling_search.h"

#include <algorithm>

namespace container::codec {
namespace {

// The sample: runs of neighbouring records from all over the block, as filters live on neighbourhood.
constexpr std::uint64_t runs = 8;
constexpr std::uint64_t runBytes = 32768;
// In percent of the block as it is; less is not worth the time of decoding.
constexpr std::uint64_t worthwhile = 97;

/// Records of a block, side by side, and how many make a piece.
struct Sample {
  std::vector<std::byte> records;
  BlockShape shape;
  std::uint32_t recordsPerRun = 0;
};

Sample sampleOf(const std::byte* records, const BlockShape& shape) {
  const std::size_t recordBytes = static_cast<std::size_t>(shape.length) * shape.format.bytes;
  const std::uint64_t perRun = std::max<std::uint64_t>(runBytes / recordBytes, 1);
  Sample sample{{}, {shape.format, shape.length, 0}, static_cast<std::uint32_t>(perRun)};
  if (shape.records <= runs * perRun) {
    sample.shape.records = shape.records;
    sample.records.assign(records, records + shape.records * recordBytes);
    return sample;
  }
  for (std::uint64_t r = 0; r < runs; ++r) {
    const std::byte* first = records + (shape.records - perRun) / (runs - 1) * r * recordBytes;
    sample.records.insert(sample.records.end(), first, first + perRun * recordBytes);
    sample.shape.records += perRun;
  }
  return sample;
}

} // namespace

std::optional<EncodingOptions> chooseEncoding(const std::byte* records, const BlockShape& shape,
                                              const EncodingWish& wish) {
  const Sample sample = sampleOf(records, shape);
  std::vector<std::vector<Scaling>> scalings{{}};
  if (auto scaling = findScaling(records, shape, wish.hint)) {
    scalings.push_back(std::move(*scaling));
  }
  std::optional<EncodingOptions> best;
  std::uint64_t bestBytes = sample.records.size() * worthwhile / 100;
  for (const std::vector<Scaling>& scaling : scalings) {
    for (const Filter filter : {Filter::none, Filter::shuffle, Filter::deltaAndShuffle}) {
      EncodingOptions options{filter, wish.codec, wish.level, scaling, sample.recordsPerRun};
      const std::uint64_t bytes = encodeBlock(sample.records.data(), sample.shape, options).size();
      if (bytes < bestBytes) {
        bestBytes = bytes;
        options.recordsPerPiece = 0;
        best = std::move(options);
      }
    }
  }
  return best;
}

} // namespace container::codec
