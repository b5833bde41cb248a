// SPDX-License-Identifier: BSD-3-Clause
// A byte of codec and two of size, then stored bytes: decoders write exactly that many bytes, and compressed bytes
// decode to the original.
#include "container/codec/compression.h"
#include "tests/fuzz/fuzz_target.h"

#include <algorithm>
#include <cstring>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  using namespace container::codec;
  if (count < 4) {
    return 0;
  }
  const auto codec = static_cast<Codec>(bytes[0] % 3);
  const std::size_t plainBytes = bytes[1] | std::size_t{bytes[2]} << 8;
  const std::span input(reinterpret_cast<const std::byte*>(bytes) + 3, count - 3);
  const auto plain = std::make_unique<std::byte[]>(plainBytes); // whose bounds a sanitizer checks
  Decompressor decompressor;
  if (decompressor.decompress(codec, input, plain.get(), plainBytes)) {
    fuzz::require(plainBytes <= mostDecodedBytes(codec, input.size()),
                  "no piece gives more than its codec can");
  }
  std::vector<std::byte> stored;
  Compressor(codec, 1 + bytes[1] % 12).append(input, stored);
  const auto again = std::make_unique<std::byte[]>(input.size());
  fuzz::require(decompressor.decompress(codec, stored, again.get(), input.size()),
                "what is compressed is read");
  fuzz::require(std::equal(input.begin(), input.end(), again.get()), "what is compressed comes back");
  return 0;
}
