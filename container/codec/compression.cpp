// SPDX-License-Identifier: BSD-3-Clause
// Calls libdeflate and LZ4 with exact sizes.
#include "container/codec/compression.h"

#include <cstring>
#include <libdeflate.h>
#include <limits>
#include <lz4.h>
#include <lz4hc.h>
#include <new>
#include <stdexcept>
#include <string>

namespace container::codec {
namespace {

constexpr int lowestSmallLz4Level = LZ4HC_CLEVEL_MIN;

void requireLevel(const char* codec, int level, int lowest, int highest) {
  if (level < lowest || level > highest) {
    throw std::invalid_argument(std::string(codec) + ": expected a level from " + std::to_string(lowest) +
                                " to " + std::to_string(highest) + ", found " + std::to_string(level));
  }
}

std::size_t lz4Bytes(std::span<const std::byte> plain, std::byte* to, int capacity, int level, void* memory) {
  const auto* from = reinterpret_cast<const char*>(plain.data());
  auto* at = reinterpret_cast<char*>(to);
  const int bytes = static_cast<int>(plain.size());
  const int written = level < lowestSmallLz4Level
                          ? LZ4_compress_fast_extState(memory, from, at, bytes, capacity, 1)
                          : LZ4_compress_HC_extStateHC(memory, from, at, bytes, capacity, level);
  return static_cast<std::size_t>(written);
}

bool decompressLz4(std::span<const std::byte> stored, std::byte* plain, std::size_t plainBytes) {
  constexpr std::size_t most = std::numeric_limits<int>::max();
  if (stored.size() > most || plainBytes > most) {
    return false;
  }
  const int written =
      LZ4_decompress_safe(reinterpret_cast<const char*>(stored.data()), reinterpret_cast<char*>(plain),
                          static_cast<int>(stored.size()), static_cast<int>(plainBytes));
  return written >= 0 && static_cast<std::size_t>(written) == plainBytes;
}

} // namespace

std::uint64_t mostDecodedBytes(Codec codec, std::uint64_t storedBytes) {
  // Deflate: a length of 258 in two bits. LZ4: a byte of a length stands for 255 bytes.
  const std::uint64_t ratio = codec == Codec::zlib ? 1032 : codec == Codec::lz4 ? 255 : 1;
  constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
  return storedBytes > largest / ratio ? largest : storedBytes * ratio;
}

std::uint64_t mostPieceBytes(Codec codec) {
  return codec == Codec::lz4 ? std::uint64_t{LZ4_MAX_INPUT_SIZE} : std::numeric_limits<std::size_t>::max();
}

struct Compressor::State {
  Codec codec = Codec::none;
  int level = 0;
  std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> deflate{
      nullptr, libdeflate_free_compressor};
  std::unique_ptr<char[]> lz4Memory;
};

Compressor::Compressor(Codec codec, int level) : state(std::make_unique<State>()) {
  state->codec = codec;
  state->level = level;
  if (codec == Codec::zlib) {
    requireLevel("zlib", level, 1, 12);
    state->deflate.reset(libdeflate_alloc_compressor(level));
    if (!state->deflate) {
      throw std::bad_alloc();
    }
  } else if (codec == Codec::lz4) {
    requireLevel("LZ4", level, 1, LZ4HC_CLEVEL_MAX);
    const int bytes = level < lowestSmallLz4Level ? LZ4_sizeofState() : LZ4_sizeofStateHC();
    state->lz4Memory = std::make_unique<char[]>(static_cast<std::size_t>(bytes));
  }
}

Compressor::~Compressor() = default;

std::size_t Compressor::append(std::span<const std::byte> plain, std::vector<std::byte>& stored) {
  if (plain.size() > mostPieceBytes(state->codec)) {
    throw std::invalid_argument("piece: expected at most " + std::to_string(mostPieceBytes(state->codec)) +
                                " bytes, found " + std::to_string(plain.size()));
  }
  if (state->codec == Codec::none) {
    stored.insert(stored.end(), plain.begin(), plain.end());
    return plain.size();
  }
  const bool isZlib = state->codec == Codec::zlib;
  const std::size_t bound = isZlib
                                ? libdeflate_zlib_compress_bound(state->deflate.get(), plain.size())
                                : static_cast<std::size_t>(LZ4_compressBound(static_cast<int>(plain.size())));
  const std::size_t before = stored.size();
  stored.resize(before + bound);
  std::byte* to = stored.data() + before;
  const std::size_t written =
      isZlib ? libdeflate_zlib_compress(state->deflate.get(), plain.data(), plain.size(), to, bound)
             : lz4Bytes(plain, to, static_cast<int>(bound), state->level, state->lz4Memory.get());
  stored.resize(before + written);
  if (written == 0) {
    throw std::logic_error("piece: the compressor ran out of the space that it asked for");
  }
  return written;
}

struct Decompressor::State {
  std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> deflate{
      nullptr, libdeflate_free_decompressor};

  bool decompressZlib(std::span<const std::byte> stored, std::byte* plain, std::size_t plainBytes) {
    if (!deflate) {
      deflate.reset(libdeflate_alloc_decompressor());
    }
    if (!deflate) {
      throw std::bad_alloc();
    }
    std::size_t used = 0;
    const libdeflate_result result = libdeflate_zlib_decompress_ex(
        deflate.get(), stored.data(), stored.size(), plain, plainBytes, &used, nullptr);
    return result == LIBDEFLATE_SUCCESS && used == stored.size();
  }
};

Decompressor::Decompressor() : state(std::make_unique<State>()) {}

Decompressor::~Decompressor() = default;

bool Decompressor::decompress(Codec codec, std::span<const std::byte> stored, std::byte* plain,
                              std::size_t plainBytes) {
  if (codec == Codec::zlib) {
    return state->decompressZlib(stored, plain, plainBytes);
  }
  if (codec == Codec::lz4) {
    return decompressLz4(stored, plain, plainBytes);
  }
  if (stored.size() != plainBytes) {
    return false;
  }
  if (plainBytes != 0) {
    std::memcpy(plain, stored.data(), plainBytes);
  }
  return true;
}

} // namespace container::codec
