// SPDX-License-Identifier: BSD-3-Clause
// Decoding, encoding and extents of a block, on one thread, against a memcpy of its decoded bytes. These are 24 million,
// so 24 / path_ms is the number of decoded gigabytes per second.
#include "bench/support/comparison.h"
#include "bench/support/random_values.h"
#include "container/codec/encoding_choice.h"
#include "container/codec/piece_decoder.h"
#include "container/codec/scaling_search.h"
#include "container/format/extent.h"

#include <cmath>
#include <cstring>

namespace {

using namespace container;
using namespace container::codec;

/// A block whose values are made from a seed.
struct Block {
  BlockShape shape;
  std::vector<std::byte> records;
};

template <class T>
Block blockOf(ValueFormat format, std::uint64_t length, const std::vector<T>& values) {
  Block block{{format, length, values.size() / length}, std::vector<std::byte>(values.size() * sizeof(T))};
  std::memcpy(block.records.data(), values.data(), block.records.size());
  return block;
}

std::size_t recordCount() {
  return bench::records(1000000, 20000);
}

double noise(std::uint64_t seed, std::size_t index, double range) {
  return bench::randomValue<double>(seed, index) * range / 1000;
}

double onGrid(double value, double offset) {
  const double product = std::nearbyint(value * 1000) * 0.001;
  return product + offset;
}

// Points of a line scanner over rolling ground, on a grid of a millimetre.
const Block& points() {
  static const Block block = [] {
    std::vector<double> values;
    for (std::size_t i = 0; i < recordCount(); ++i) {
      const double along = static_cast<double>(i / 1000) * 0.3;
      const double across = static_cast<double>(i % 1000) * 0.25;
      const double ground = 300 + 5 * std::sin(along / 40) + 4 * std::cos(across / 25);
      values.push_back(onGrid(along + noise(1, i, 0.1), 637000));
      values.push_back(onGrid(across + noise(2, i, 0.1), 4851000));
      values.push_back(onGrid(ground + noise(3, i, 0.2), 0));
    }
    return blockOf({NumberKind::real, 8}, 3, values);
  }();
  return block;
}

const Block& amplitudes() {
  static const Block block = [] {
    std::vector<std::uint16_t> values;
    for (std::size_t i = 0; i < recordCount() * 12; ++i) {
      values.push_back(
          static_cast<std::uint16_t>(2000 + 800 * std::sin(static_cast<double>(i) / 700) + noise(4, i, 90)));
    }
    return blockOf({NumberKind::unsignedInteger, 2}, 1, values);
  }();
  return block;
}

const Block& classes() {
  static const Block block = [] {
    std::vector<std::uint8_t> values;
    for (std::size_t i = 0; i < recordCount() * 24; ++i) {
      values.push_back(noise(5, i / 50, 1) < 0.7 ? 2 : static_cast<std::uint8_t>(3 + i / 50 % 4));
    }
    return blockOf({NumberKind::unsignedInteger, 1}, 1, values);
  }();
  return block;
}

class Decoding {
 public:
  Decoding(const Block& source, const EncodingOptions& options)
      : block(source), encoded(encodeBlock(block.records.data(), block.shape, options)),
        header(parseHeader(encoded, encoded.size(), block.shape)), records(block.records.size()) {}

  void run() {
    const auto stored = [this](std::uint32_t piece) {
      return std::span<const std::byte>(encoded).subspan(header.pieces[piece].position,
                                                         header.pieces[piece].bytes);
    };
    decoder.decodeRange(header, 0, block.shape.records, stored, records.data());
  }

  bool isEqual() const { return records == block.records; }

 private:
  const Block& block;
  std::vector<std::byte> encoded;
  PieceHeader header;
  std::vector<std::byte> records;
  PieceDecoder decoder;
};

bench::Finding overCopy(const Block& block, const std::function<void()>& path) {
  std::vector<std::byte> copy(block.records.size());
  return bench::compare({.run = path},
                        {.run = [&] { std::memcpy(copy.data(), block.records.data(), copy.size()); }});
}

bench::Finding decoding(const Block& block, const EncodingOptions& options) {
  Decoding decoding(block, options);
  decoding.run();
  bench::require(decoding.isEqual(), "decoded records");
  return overCopy(block, [&] { decoding.run(); });
}

bench::Finding encoding(const Block& block, const EncodingOptions& options) {
  Decoding decoding(block, options);
  decoding.run();
  bench::require(decoding.isEqual(), "decoded records");
  return overCopy(block, [&] { encodeBlock(block.records.data(), block.shape, options); });
}

bench::Finding choosing(const Block& block, Codec codec, int level) {
  const EncodingWish wish{codec, level};
  const auto chosen = chooseEncoding(block.records.data(), block.shape, wish);
  bench::require(chosen && !chosen->scaling.empty(), "the choice for values on a grid");
  return overCopy(block, [&] { chooseEncoding(block.records.data(), block.shape, wish); });
}

bench::Finding extents(const Block& block) {
  const StoredValues values{block.records.data(), block.shape.format, block.shape.length,
                            block.shape.records};
  const auto found = extentsOf(values);
  for (std::size_t c = 0; c < found.size(); ++c) {
    bench::require(found[c].minimum < found[c].maximum && found[c].missing == 0, "extents");
  }
  return overCopy(block, [&] { extentsOf(values); });
}

using Source = const Block& (*)();

std::string nameOf(const char* values, const EncodingOptions& options, bool isScaled) {
  const char* codecs[] = {"no codec", "zlib", "LZ4"};
  const char* filters[] = {"no filter", "shuffle", "delta"};
  std::string name = std::string(values) + ", " + codecs[static_cast<int>(options.codec)];
  name += options.codec == Codec::none ? "" : " " + std::to_string(options.level);
  return name + ", " + filters[static_cast<int>(options.filter)] + (isScaled ? ", scaled" : "");
}

EncodingOptions withScaling(const Block& block, EncodingOptions options, bool isScaled) {
  if (isScaled) {
    const auto scaling = findScaling(block.records.data(), block.shape, {});
    bench::require(scaling.has_value(), "the grid of the values");
    options.scaling = *scaling;
  }
  return options;
}

// The values are made when they are first timed, as many as the command line asks for.
void add(const char* values, Source source, const EncodingOptions& options, bool isScaled = false) {
  const std::string name = nameOf(values, options, isScaled);
  bench::addComparison("decode " + name + " / memcpy",
                       [=] { return decoding(source(), withScaling(source(), options, isScaled)); });
  bench::addComparison("encode " + name + " / memcpy",
                       [=] { return encoding(source(), withScaling(source(), options, isScaled)); });
}

void addAll() {
  for (const auto& [codec, level] :
       {std::pair{Codec::none, 0}, {Codec::zlib, 6}, {Codec::lz4, 1}, {Codec::lz4, 9}}) {
    for (const Filter filter : {Filter::none, Filter::shuffle, Filter::deltaAndShuffle}) {
      add("points", points, {filter, codec, level, {}, 0}, true);
      add("amplitudes", amplitudes, {filter, codec, level, {}, 0});
      add("classes", classes, {filter, codec, level, {}, 0});
    }
    add("points", points, {Filter::shuffle, codec, level, {}, 0});
  }
  bench::addComparison("choose for points, zlib 6 / memcpy",
                       [] { return choosing(points(), Codec::zlib, 6); });
  bench::addComparison("choose for points, LZ4 9 / memcpy", [] { return choosing(points(), Codec::lz4, 9); });
  bench::addComparison("extents of points / memcpy", [] { return extents(points()); });
  bench::addComparison("extents of amplitudes / memcpy", [] { return extents(amplitudes()); });
  bench::addComparison("extents of classes / memcpy", [] { return extents(classes()); });
}

} // namespace

int main(int argc, char** argv) {
  addAll();
  return bench::runComparisons(argc, argv);
}
