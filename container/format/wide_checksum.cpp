// SPDX-License-Identifier: BSD-3-Clause
// CRC-32 in registers of 512 bits.
//
// Why: a load that verifies reads every byte a second time; with the usual 128 bits that takes a fifth of its time.
// Folding: a register holds the remainder of all bytes so far. Two carry-less products shift it over a distance, onto
// the bytes there; the literature on PCLMULQDQ describes the method. A processor with wide products computes one in two
// cycles, which limits folding alone to about 60 GB per second.
// Moving: a byte can also be moved without a product. Modulo the polynomial, x^(8a) = x^(8b) + x^(8c) + 1, so a byte
// contributes the same at its own place as at three places together: a - b, a - c and a bytes further on. Adding is an
// exclusive or, of which a processor does several per cycle. So the first half of each piece is added to the second,
// and only the second is folded. a, b and c were found by search; the compiler checks them below. b is small, so that
// the three reads of a byte follow one another closely and come from the first-level cache.
// Without RDB2NIMBRA_WIDE_CHECKSUM (an option of the configure step), and on other processors, libdeflate does it all.
#include "container/format/wide_checksum.h"

#include <array>
#include <libdeflate.h>
#if RDB2NIMBRA_WIDE_CHECKSUM && defined(__x86_64__)
#include <immintrin.h>
#endif

namespace container {

#if RDB2NIMBRA_WIDE_CHECKSUM && defined(__x86_64__)
namespace {

#define WIDE __attribute__((target("avx512f,avx512bw,avx512dq,avx512vl,vpclmulqdq,pclmul")))

// x^degree modulo the polynomial, bits reflected, at the position where a carry-less product expects it.
constexpr std::uint64_t power(unsigned degree) {
  std::uint32_t remainder = 0x80000000; // x^0
  for (unsigned i = 0; i < degree; ++i) {
    remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? 0xedb88320U : 0U);
  }
  return std::uint64_t{remainder} << 1;
}

// The factors that shift a register over a distance of `bits`, for its low and its high half.
struct Distance {
  std::uint64_t low, high;
};

constexpr Distance distance(unsigned bits) {
  return {power(bits + 32), power(bits - 32)};
}

static_assert(distance(512).low == 0x154442bd4 && distance(512).high == 0x1c6e41596,
              "the constants that the method's literature prints for 512 bits");

constexpr unsigned a = 16316;
constexpr unsigned b = 792;
constexpr unsigned c = 197;
static_assert((power(8 * a) ^ power(8 * b) ^ power(8 * c) ^ power(0)) == 0, "a multiple of the polynomial");

constexpr std::size_t registerBytes = 64;
constexpr std::size_t registers = checksumStepBytes / registerBytes;

// Distances to the three places, the nearest first.
constexpr std::array<std::size_t, 3> reach{a - b, a - c, a};

constexpr std::size_t wholeSteps(std::size_t bytes) {
  return (bytes + checksumStepBytes - 1) / checksumStepBytes;
}

// A piece consists of steps that are moved, followed by steps that receive and are folded. The first and the last of
// these receive from some of the three places only, and at some of their bytes.
constexpr std::size_t movedSteps = reach[0] / checksumStepBytes;
constexpr std::size_t movedBytes = movedSteps * checksumStepBytes;
constexpr std::size_t pieceSteps = wholeSteps(reach[2] + movedBytes);
constexpr std::size_t foldedSteps = pieceSteps - movedSteps;
constexpr std::size_t firstSteps = wholeSteps(reach[2]) - movedSteps;
constexpr std::size_t lastSteps = pieceSteps - (reach[0] + movedBytes) / checksumStepBytes;

using PlaceMasks = std::array<std::uint64_t, reach.size()>;
using StepMasks = std::array<PlaceMasks, registers>;

// Which bytes of the register at `position` of the piece receive a byte from `distance` before them.
constexpr std::uint64_t receivers(std::size_t position, std::size_t distance) {
  std::uint64_t mask = 0;
  for (std::size_t i = 0; i < registerBytes; ++i) {
    const std::size_t at = position + i;
    mask |= std::uint64_t{at >= distance && at < distance + movedBytes} << i;
  }
  return mask;
}

// The masks of `count` folded steps from the given one on.
template <std::size_t count>
constexpr std::array<StepMasks, count> masksFrom(std::size_t foldedStep) {
  std::array<StepMasks, count> masks{};
  for (std::size_t i = 0; i < count * registers * reach.size(); ++i) {
    const std::size_t place = i % reach.size();
    const std::size_t part = i / reach.size() % registers;
    const std::size_t step = i / reach.size() / registers;
    const std::size_t start = movedBytes + (foldedStep + step) * checksumStepBytes + part * registerBytes;
    masks[step][part][place] = receivers(start, reach[place]);
  }
  return masks;
}

constexpr auto firstMasks = masksFrom<firstSteps>(0);
constexpr auto lastMasks = masksFrom<lastSteps>(foldedSteps - lastSteps);

constexpr int xorOfThree = 0x96;

WIDE inline __m512i folded(__m512i value, __m512i by, __m512i onto) {
  return _mm512_ternarylogic_epi64(_mm512_clmulepi64_epi128(value, by, 0x00),
                                   _mm512_clmulepi64_epi128(value, by, 0x11), onto, xorOfThree);
}

WIDE inline __m128i folded(__m128i value, __m128i by, __m128i onto) {
  return _mm_xor_si128(
      _mm_xor_si128(_mm_clmulepi64_si128(value, by, 0x00), _mm_clmulepi64_si128(value, by, 0x11)), onto);
}

WIDE inline __m512i wide(Distance by) {
  const auto low = static_cast<long long>(by.low);
  const auto high = static_cast<long long>(by.high);
  return _mm512_set_epi64(high, low, high, low, high, low, high, low);
}

// A register's bytes, as they are.
struct Alone {
  WIDE __m512i operator()(const unsigned char* at, std::size_t) const { return _mm512_loadu_si512(at); }
};

// A register's bytes and all bytes that are moved there.
struct Receiving {
  WIDE __m512i operator()(const unsigned char* at, std::size_t) const {
    const __m512i nearest = _mm512_xor_si512(_mm512_loadu_si512(at), _mm512_loadu_si512(at - reach[0]));
    return _mm512_ternarylogic_epi64(nearest, _mm512_loadu_si512(at - reach[1]),
                                     _mm512_loadu_si512(at - reach[2]), xorOfThree);
  }
};

// A register's bytes and those that are moved there according to its masks; bytes outside a mask are not read.
struct ReceivingSome {
  const StepMasks& masks;

  WIDE __m512i operator()(const unsigned char* at, std::size_t part) const {
    __m512i sum = _mm512_loadu_si512(at);
    for (std::size_t place = 0; place < reach.size(); ++place) {
      sum = _mm512_xor_si512(sum, _mm512_maskz_loadu_epi8(masks[part][place], at - reach[place]));
    }
    return sum;
  }
};

// The remainder of all bytes so far, in four registers.
struct Sums {
  __m512i part[registers];

  template <class Bytes>
  WIDE inline void fold(__m512i by, const unsigned char* step, Bytes bytes) {
#pragma GCC unroll 4
    for (std::size_t i = 0; i < registers; ++i) {
      part[i] = folded(part[i], by, bytes(step + i * registerBytes, i));
    }
  }
};

WIDE inline void foldPiece(Sums& sums, __m512i overOneStep, const unsigned char* piece) {
  static constexpr Distance overMovedSteps = distance(8 * (movedBytes + checksumStepBytes));
  const unsigned char* step = piece + movedBytes;
  __m512i by = wide(overMovedSteps);
  for (const StepMasks& masks : firstMasks) {
    sums.fold(by, step, ReceivingSome{masks});
    by = overOneStep;
    step += checksumStepBytes;
  }
  for (std::size_t i = firstSteps; i < foldedSteps - lastSteps; ++i, step += checksumStepBytes) {
    sums.fold(by, step, Receiving{});
  }
  for (const StepMasks& masks : lastMasks) {
    sums.fold(by, step, ReceivingSome{masks});
    step += checksumStepBytes;
  }
}

// The checksum of all bytes that were folded into `sums`.
WIDE inline std::uint32_t remainder(const Sums& sums) {
  static constexpr Distance overOneRegister = distance(512);
  static constexpr Distance overOneLane = distance(128);
  const __m512i byRegister = wide(overOneRegister);
  __m512i sum = sums.part[0];
  for (std::size_t i = 1; i < registers; ++i) {
    sum = folded(sum, byRegister, sums.part[i]);
  }
  const __m128i byLane =
      _mm_set_epi64x(static_cast<long long>(overOneLane.high), static_cast<long long>(overOneLane.low));
  __m128i last = _mm512_extracti64x2_epi64(sum, 0);
  last = folded(last, byLane, _mm512_extracti64x2_epi64(sum, 1));
  last = folded(last, byLane, _mm512_extracti64x2_epi64(sum, 2));
  last = folded(last, byLane, _mm512_extracti64x2_epi64(sum, 3));
  // These 16 bytes have the same remainder as all bytes so far, starting from an empty register.
  unsigned char rest[16];
  _mm_storeu_si128(reinterpret_cast<__m128i*>(rest), last);
  return libdeflate_crc32(0xffffffffU, rest, sizeof rest);
}

} // namespace

bool hasWideMultiplication() {
  static const bool found = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                            __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl") &&
                            __builtin_cpu_supports("vpclmulqdq");
  return found;
}

WIDE std::uint32_t wideCrc32(std::uint32_t previous, const unsigned char* data, std::size_t steps) {
  static constexpr Distance overOneStep = distance(8 * checksumStepBytes);
  const __m512i byStep = wide(overOneStep);
  Sums sums;
  for (std::size_t i = 0; i < registers; ++i) {
    sums.part[i] = _mm512_loadu_si512(data + i * registerBytes);
  }
  const __m128i start = _mm_cvtsi32_si128(static_cast<int>(~previous));
  sums.part[0] = _mm512_xor_si512(sums.part[0], _mm512_zextsi128_si512(start));
  data += checksumStepBytes;
  for (--steps; steps >= pieceSteps; steps -= pieceSteps) {
    foldPiece(sums, byStep, data);
    data += pieceSteps * checksumStepBytes;
  }
  for (; steps > 0; --steps) {
    sums.fold(byStep, data, Alone{});
    data += checksumStepBytes;
  }
  return remainder(sums);
}

#else

bool hasWideMultiplication() {
  return false;
}

std::uint32_t wideCrc32(std::uint32_t previous, const unsigned char* data, std::size_t steps) {
  return libdeflate_crc32(previous, data, steps * checksumStepBytes);
}

#endif

} // namespace container
