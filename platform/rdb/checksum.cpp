// CRC-32 by folding: 256 bytes a step where the processor multiplies polynomials in wide registers.
// Partner: checksum.h. Method: folding by carry-less multiplication, as the literature on PCLMULQDQ has it.
#include "platform/rdb/checksum.h"

#include <libdeflate.h>
#ifdef __x86_64__
#include <immintrin.h>
#endif

namespace riegl::rdb::embedded {

#ifdef __x86_64__
namespace {

#define WIDE __attribute__((target("avx512f,avx512dq,avx512vl,vpclmulqdq,pclmul")))

// x^degree modulo the polynomial, bits reflected, in the place where a carry-less product expects it.
constexpr std::uint64_t power(unsigned degree) {
  std::uint32_t remainder = 0x80000000; // x^0
  for (unsigned i = 0; i < degree; ++i) {
    remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? 0xedb88320U : 0U);
  }
  return std::uint64_t{remainder} << 1;
}

// What moves a register over a distance of `bits`, for its low and its high half.
struct Distance {
  std::uint64_t low, high;
};

constexpr Distance distance(unsigned bits) {
  return {power(bits + 32), power(bits - 32)};
}

static_assert(distance(512).low == 0x154442bd4 && distance(512).high == 0x1c6e41596,
              "the constants that the method's literature prints for 512 bits");

WIDE __m512i folded(__m512i value, __m512i by, __m512i onto) {
  constexpr int xorOfThree = 0x96;
  return _mm512_ternarylogic_epi64(_mm512_clmulepi64_epi128(value, by, 0x00),
                                   _mm512_clmulepi64_epi128(value, by, 0x11), onto, xorOfThree);
}

WIDE __m128i folded(__m128i value, __m128i by, __m128i onto) {
  return _mm_xor_si128(
      _mm_xor_si128(_mm_clmulepi64_si128(value, by, 0x00), _mm_clmulepi64_si128(value, by, 0x11)), onto);
}

WIDE __m512i wide(Distance by) {
  const auto low = static_cast<long long>(by.low);
  const auto high = static_cast<long long>(by.high);
  return _mm512_set_epi64(high, low, high, low, high, low, high, low);
}

// `steps` is at least 1; a step takes 256 bytes.
WIDE std::uint32_t crc32InSteps(std::uint32_t previous, const unsigned char* data, std::size_t steps) {
  static constexpr Distance four = distance(2048);
  static constexpr Distance one = distance(512);
  static constexpr Distance lane = distance(128);
  __m512i sums[4];
  for (int i = 0; i < 4; ++i) {
    sums[i] = _mm512_loadu_si512(data + 64 * i);
  }
  sums[0] = _mm512_xor_si512(sums[0], _mm512_zextsi128_si512(_mm_cvtsi32_si128(static_cast<int>(~previous))));
  const __m512i byFour = wide(four);
  for (data += 256; --steps > 0; data += 256) {
    for (int i = 0; i < 4; ++i) {
      sums[i] = folded(sums[i], byFour, _mm512_loadu_si512(data + 64 * i));
    }
  }
  const __m512i byOne = wide(one);
  __m512i sum = sums[0];
  for (int i = 1; i < 4; ++i) {
    sum = folded(sum, byOne, sums[i]);
  }
  const __m128i byLane = _mm_set_epi64x(static_cast<long long>(lane.high), static_cast<long long>(lane.low));
  __m128i last = _mm512_extracti64x2_epi64(sum, 0);
  last = folded(last, byLane, _mm512_extracti64x2_epi64(sum, 1));
  last = folded(last, byLane, _mm512_extracti64x2_epi64(sum, 2));
  last = folded(last, byLane, _mm512_extracti64x2_epi64(sum, 3));
  // These 16 bytes have the remainder of all bytes before them, counted from an empty register.
  unsigned char rest[16];
  _mm_storeu_si128(reinterpret_cast<__m128i*>(rest), last);
  return libdeflate_crc32(0xffffffffU, rest, sizeof rest);
}

bool hasWideMultiplication() {
  static const bool found = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                            __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("vpclmulqdq");
  return found;
}

} // namespace
#endif

std::uint32_t crc32(std::uint32_t previous, const void* data, std::size_t bytes) {
#ifdef __x86_64__
  constexpr std::size_t stepBytes = 256;
  if (bytes >= stepBytes && hasWideMultiplication()) {
    const auto* const begin = static_cast<const unsigned char*>(data);
    const std::size_t steps = bytes / stepBytes;
    previous = crc32InSteps(previous, begin, steps);
    data = begin + steps * stepBytes;
    bytes -= steps * stepBytes;
  }
#endif
  // With no bytes left the library would start anew instead of handing back what it was given.
  return bytes == 0 ? previous : libdeflate_crc32(previous, data, bytes);
}

} // namespace riegl::rdb::embedded
