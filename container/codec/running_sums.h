// SPDX-License-Identifier: BSD-3-Clause
// The inverse of taking differences between records: running sums per component. Internal to this room.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace container::codec {

template <class T>
T load(const std::byte* from) {
  T value;
  std::memcpy(&value, from, sizeof value);
  return value;
}

template <class T>
void store(const T& value, std::byte* to) {
  std::memcpy(to, &value, sizeof value);
}

/// Adds each record to the next, in place, for few components: their sums stay in processor registers.
/// The record before the first stands in front of `values`.
template <class T, std::size_t Length>
void addFewComponents(std::byte* values, std::size_t records) {
  std::array<T, Length> sums;
  std::memcpy(sums.data(), values - sizeof sums, sizeof sums);
  for (std::size_t r = 0; r < records; ++r) {
    for (std::size_t c = 0; c < Length; ++c) {
      std::byte* at = values + (r * Length + c) * sizeof(T);
      sums[c] = static_cast<T>(sums[c] + load<T>(at));
      store(sums[c], at);
    }
  }
}

/// The same for many components, a record at a time.
template <class T>
void addManyComponents(std::byte* values, std::size_t length, std::size_t records) {
  for (std::size_t r = 0; r < records; ++r) {
    std::byte* __restrict record = values + r * length * sizeof(T);
    const std::byte* __restrict before = record - length * sizeof(T);
    for (std::size_t c = 0; c < length; ++c) {
      store(static_cast<T>(load<T>(record + c * sizeof(T)) + load<T>(before + c * sizeof(T))),
            record + c * sizeof(T));
    }
  }
}

#if defined(__has_builtin)
#if __has_builtin(__builtin_shufflevector)
#define RDB2NIMBRA_VECTOR_SUMS
#endif
#endif

#ifdef RDB2NIMBRA_VECTOR_SUMS

/// The same where several records fit into one register of 16 bytes: sums of 2, 4, 8 and 16 neighbours by shifted
/// additions, then the last record of the register before on top. Two to seven times as fast as a value at a time.
template <class T, std::size_t Length>
class PackedRecords {
 public:
  static constexpr std::size_t recordBytes = Length * sizeof(T);
  static constexpr std::size_t perRegister = 16 / recordBytes;

  static void add(std::byte* values, std::size_t records) {
    Register last{};
    std::memcpy(reinterpret_cast<std::byte*>(&last) + 16 - recordBytes, values - recordBytes, recordBytes);
    last = broadcast(last, places);
    std::size_t r = 0;
    for (; r + perRegister <= records; r += perRegister) {
      std::byte* at = values + r * recordBytes;
      auto sums = load<Register>(at);
      sums += shifted<1>(sums, lanes);
      if constexpr (perRegister > 2) {
        sums += shifted<2>(sums, lanes);
      }
      if constexpr (perRegister > 4) {
        sums += shifted<4>(sums, lanes);
      }
      if constexpr (perRegister > 8) {
        sums += shifted<8>(sums, lanes);
      }
      sums += last;
      store(sums, at);
      last = broadcast(sums, places);
    }
    addFewComponents<T, Length>(values + r * recordBytes, records - r);
  }

 private:
  using Register [[gnu::vector_size(16)]] = T;
  static constexpr std::size_t laneCount = 16 / sizeof(T);
  static constexpr std::make_index_sequence<laneCount> lanes{};
  static constexpr std::make_index_sequence<perRegister> places{};
  using RecordBits = std::conditional_t<recordBytes == 1, std::uint8_t,
                                        std::conditional_t<recordBytes == 2, std::uint16_t, std::uint32_t>>;
  using Records [[gnu::vector_size(16)]] = RecordBits;

  // Moved by so many records to later places, zeros before them.
  template <std::size_t Count, std::size_t... Lane>
  static Register shifted(Register from, std::index_sequence<Lane...>) {
    return __builtin_shufflevector(Register{}, from,
                                   (Lane < Count * Length ? Lane : laneCount + Lane - Count * Length)...);
  }

  // The last record in every place; whole records at a time, which takes fewer instructions than value by value.
  template <std::size_t... Record>
  static Register broadcast(Register from, std::index_sequence<Record...>) {
    const auto whole = std::bit_cast<Records>(from);
    return std::bit_cast<Register>(__builtin_shufflevector(whole, whole, (perRegister - 1 + Record * 0)...));
  }
};

#endif

template <class T, std::size_t Length>
void addComponents(std::byte* values, std::size_t records) {
#ifdef RDB2NIMBRA_VECTOR_SUMS
  if constexpr (16 % (Length * sizeof(T)) == 0 && 16 / (Length * sizeof(T)) >= 4) {
    return PackedRecords<T, Length>::add(values, records);
  }
#endif
  addFewComponents<T, Length>(values, records);
}

/// Adds to each record the one before it, in place, modulo 2^(bits of T).
///
/// \param values   `records` records of `length` values of type T, any alignment; the record before the first stands
///                 in front of them
template <class T>
void addRecordsBefore(std::byte* values, std::size_t length, std::size_t records) {
  switch (length) {
  case 1:
    return addComponents<T, 1>(values, records);
  case 2:
    return addComponents<T, 2>(values, records);
  case 3:
    return addComponents<T, 3>(values, records);
  case 4:
    return addComponents<T, 4>(values, records);
  default:
    return addManyComponents<T>(values, length, records);
  }
}

} // namespace container::codec
