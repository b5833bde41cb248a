// SPDX-License-Identifier: BSD-3-Clause
// The codecs of a piece: none, zlib streams, LZ4 blocks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace container::codec {

/// How the filtered bytes of a piece are compressed; the numbers are those of the file.
enum class Codec : std::uint8_t {
  none = 0,
  zlib = 1, ///< a zlib stream, RFC 1950
  lz4 = 2,  ///< an LZ4 block, without frame
};

/// The decoded bytes that so many stored bytes can have at most; the largest number where it does not fit.
std::uint64_t mostDecodedBytes(Codec codec, std::uint64_t storedBytes);

/// The bytes that a piece may have decoded, 2113929216 for LZ4, whose library counts in 32 bits.
std::uint64_t mostPieceBytes(Codec codec);

/// Compresses pieces, one after the other, with one codec and level. Not thread-safe; each thread has its own.
class Compressor {
 public:
  /// \param level  zlib: 1 (fast) to 12 (small); LZ4: 1 (fast), 3 to 12 (small, as fast to decode); else unused
  /// \errors  std::invalid_argument where there is no such level
  Compressor(Codec codec, int level);
  Compressor(const Compressor&) = delete;
  Compressor& operator=(const Compressor&) = delete;
  ~Compressor();

  /// Appends the compressed form of `plain` to `stored`.
  /// \param plain  at least one byte and at most mostPieceBytes()
  /// \return  bytes appended
  std::size_t append(std::span<const std::byte> plain, std::vector<std::byte>& stored);

 private:
  struct State;
  std::unique_ptr<State> state;
};

/// Decompresses pieces. Not thread-safe; each thread has its own.
class Decompressor {
 public:
  Decompressor();
  Decompressor(const Decompressor&) = delete;
  Decompressor& operator=(const Decompressor&) = delete;
  ~Decompressor();

  /// Decompresses a piece whose size is known.
  ///
  /// \param stored      all bytes of the piece, and no others
  /// \param plain       receives `plainBytes` bytes, and no byte more whatever `stored` holds
  /// \return  whether `stored` is a valid piece of exactly `plainBytes` bytes; if not, `plain` holds anything
  bool decompress(Codec codec, std::span<const std::byte> stored, std::byte* plain, std::size_t plainBytes);

 private:
  struct State;
  std::unique_ptr<State> state;
};

} // namespace container::codec
