// SPDX-License-Identifier: BSD-3-Clause
// Databases for tests: columns told by a rule, written with the embedded client's writer.
#pragma once

#include "container/write/writer.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace support {

/// One column: its description, and the value of each record and component.
struct Column {
  container::Attribute spec;
  std::function<double(std::uint64_t record, unsigned int component)> value;
};

/// A column of `length` values a record, each the same function of the record's number.
inline Column column(const std::string& name, container::ElementType type, unsigned int length,
                     std::function<double(std::uint64_t, unsigned int)> value) {
  Column made;
  made.spec.name = name;
  made.spec.type = type;
  made.spec.length = length;
  made.value = std::move(value);
  return made;
}

namespace detail {

template <class Stored>
void store(std::vector<unsigned char>& bytes, double value) {
  const auto stored = static_cast<Stored>(value);
  const auto* const raw = reinterpret_cast<const unsigned char*>(&stored);
  bytes.insert(bytes.end(), raw, raw + sizeof(Stored));
}

inline void storeAs(container::ElementType type, std::vector<unsigned char>& bytes, double value) {
  using Type = container::ElementType;
  switch (type) {
  case Type::int8:
    return store<std::int8_t>(bytes, value);
  case Type::uint8:
    return store<std::uint8_t>(bytes, value);
  case Type::int16:
    return store<std::int16_t>(bytes, value);
  case Type::uint16:
    return store<std::uint16_t>(bytes, value);
  case Type::int32:
    return store<std::int32_t>(bytes, value);
  case Type::uint32:
    return store<std::uint32_t>(bytes, value);
  case Type::int64:
    return store<std::int64_t>(bytes, value);
  case Type::uint64:
    return store<std::uint64_t>(bytes, value);
  case Type::float32:
    return store<float>(bytes, value);
  case Type::float64:
    return store<double>(bytes, value);
  }
}

} // namespace detail

/// Writes a database of `records` records.
inline void writeDatabase(const std::string& path, std::uint64_t records, const std::vector<Column>& columns,
                          const std::map<std::string, std::string>& metadata = {}) {
  container::Writer writer(path);
  for (const Column& column : columns) {
    writer.addAttribute(column.spec);
  }
  for (const auto& [name, text] : metadata) {
    writer.setMetadata(name, text);
  }
  constexpr std::uint64_t pieceRecords = 65536;
  for (std::uint64_t first = 0; first < records; first += pieceRecords) {
    const std::uint64_t end = std::min(records, first + pieceRecords);
    std::vector<std::vector<unsigned char>> pieces(columns.size());
    std::vector<const void*> places;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      for (std::uint64_t record = first; record < end; ++record) {
        for (unsigned int component = 0; component < columns[i].spec.length; ++component) {
          detail::storeAs(columns[i].spec.type, pieces[i], columns[i].value(record, component));
        }
      }
      places.push_back(pieces[i].data());
    }
    writer.write(end - first, places);
  }
  writer.finish();
}

} // namespace support
