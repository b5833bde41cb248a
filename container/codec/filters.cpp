// SPDX-License-Identifier: BSD-3-Clause
// Shuffle and delta in plain loops that the compiler vectorises. Two passes over the same values go by chunks, so that
// the second finds them in the first-level cache.
#include "container/codec/filters.h"

#include "container/codec/running_sums.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace container::codec {
namespace {

static_assert(std::endian::native == std::endian::little, "the file's values are little-endian");

constexpr std::size_t chunkBytes = 8192;

// Puts byte b of value i at planes[b * stride + i].
template <std::size_t Width>
void split(const std::byte* __restrict values, std::size_t count, std::byte* __restrict planes,
           std::size_t stride) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t b = 0; b < Width; ++b) {
      planes[b * stride + i] = values[i * Width + b];
    }
  }
}

// Compilers give up on eight bytes at a time; halves of four bytes are ten times as fast.
template <>
void split<8>(const std::byte* __restrict values, std::size_t count, std::byte* __restrict planes,
              std::size_t stride) {
  constexpr std::size_t chunk = chunkBytes / 8;
  std::array<std::uint32_t, chunk> low;
  std::array<std::uint32_t, chunk> high;
  for (std::size_t first = 0; first < count; first += chunk) {
    const std::size_t many = std::min(chunk, count - first);
    for (std::size_t i = 0; i < many; ++i) {
      low[i] = load<std::uint32_t>(values + (first + i) * 8);
      high[i] = load<std::uint32_t>(values + (first + i) * 8 + 4);
    }
    split<4>(reinterpret_cast<const std::byte*>(low.data()), many, planes + first, stride);
    split<4>(reinterpret_cast<const std::byte*>(high.data()), many, planes + 4 * stride + first, stride);
  }
}

// The inverse of split.
template <std::size_t Width>
void join(const std::byte* __restrict planes, std::size_t stride, std::size_t count,
          std::byte* __restrict values) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t b = 0; b < Width; ++b) {
      values[i * Width + b] = planes[b * stride + i];
    }
  }
}

// Differences of `count` values; the values of the record before them stand in front of `values`.
template <class T>
void subtractRecordBefore(const std::byte* __restrict values, std::size_t length, std::size_t count,
                          std::byte* __restrict differences) {
  const std::byte* before = values - length * sizeof(T);
  for (std::size_t i = 0; i < count; ++i) {
    const T difference = static_cast<T>(load<T>(values + i * sizeof(T)) - load<T>(before + i * sizeof(T)));
    store(difference, differences + i * sizeof(T));
  }
}

template <class T>
void applyDelta(const RecordShape& shape, const std::byte* records, std::byte* filtered) {
  const std::size_t total = shape.values();
  const std::size_t head = std::min(shape.length, total);
  split<sizeof(T)>(records, head, filtered, total);
  std::array<std::byte, chunkBytes> differences;
  constexpr std::size_t chunk = chunkBytes / sizeof(T);
  for (std::size_t first = head; first < total; first += chunk) {
    const std::size_t count = std::min(chunk, total - first);
    subtractRecordBefore<T>(records + first * sizeof(T), shape.length, count, differences.data());
    split<sizeof(T)>(differences.data(), count, filtered + first, total);
  }
}

template <class T>
void removeDelta(const RecordShape& shape, const std::byte* filtered, std::size_t first, std::size_t count,
                 std::byte* records) {
  const std::size_t recordBytes = shape.length * sizeof(T);
  const std::size_t chunk = std::max<std::size_t>(chunkBytes / recordBytes, 1);
  for (std::size_t done = 0; done < count; done += chunk) {
    const std::size_t many = std::min(chunk, count - done);
    std::byte* at = records + done * recordBytes;
    join<sizeof(T)>(filtered + (first + done) * shape.length, shape.values(), many * shape.length, at);
    const std::size_t asItIs = first + done == 0 ? 1 : 0;
    addRecordsBefore<T>(at + asItIs * recordBytes, shape.length, many - asItIs);
  }
}

template <class T>
void apply(Filter filter, const RecordShape& shape, const std::byte* records, std::byte* filtered) {
  if (filter == Filter::deltaAndShuffle) {
    applyDelta<T>(shape, records, filtered);
  } else {
    split<sizeof(T)>(records, shape.values(), filtered, shape.values());
  }
}

template <class T>
void remove(Filter filter, const RecordShape& shape, const std::byte* filtered, std::size_t first,
            std::size_t count, std::byte* records) {
  if (filter == Filter::deltaAndShuffle) {
    removeDelta<T>(shape, filtered, first, count, records);
  } else {
    join<sizeof(T)>(filtered + first * shape.length, shape.values(), count * shape.length, records);
  }
}

void copy(const std::byte* from, std::size_t bytes, std::byte* to) {
  if (bytes != 0) {
    std::memcpy(to, from, bytes);
  }
}

} // namespace

void applyFilter(Filter filter, const RecordShape& shape, const std::byte* records, std::byte* filtered) {
  if (filter == Filter::none) {
    return copy(records, shape.bytes(), filtered);
  }
  switch (shape.valueBytes) {
  case 1:
    return apply<std::uint8_t>(filter, shape, records, filtered);
  case 2:
    return apply<std::uint16_t>(filter, shape, records, filtered);
  case 4:
    return apply<std::uint32_t>(filter, shape, records, filtered);
  default:
    return apply<std::uint64_t>(filter, shape, records, filtered);
  }
}

void removeFilter(Filter filter, const RecordShape& shape, const std::byte* filtered, std::byte* records) {
  removeFilter(filter, shape, filtered, 0, shape.count, records);
}

void removeFilter(Filter filter, const RecordShape& shape, const std::byte* filtered, std::size_t first,
                  std::size_t count, std::byte* records) {
  if (filter == Filter::none) {
    const std::size_t recordBytes = shape.length * shape.valueBytes;
    return copy(filtered + first * recordBytes, count * recordBytes, records);
  }
  switch (shape.valueBytes) {
  case 1:
    return remove<std::uint8_t>(filter, shape, filtered, first, count, records);
  case 2:
    return remove<std::uint16_t>(filter, shape, filtered, first, count, records);
  case 4:
    return remove<std::uint32_t>(filter, shape, filtered, first, count, records);
  default:
    return remove<std::uint64_t>(filter, shape, filtered, first, count, records);
  }
}

} // namespace container::codec
