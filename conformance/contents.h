// SPDX-License-Identifier: BSD-3-Clause
// What an adapter makes a database from, and the one function that it defines.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace conformance {

/// Element types, by the numbers of `riegl::rdb::pointcloud::DataType`.
enum class Element : unsigned {
  uint8 = 1,
  int8 = 2,
  uint16 = 3,
  int16 = 4,
  uint32 = 5,
  int32 = 6,
  uint64 = 7,
  int64 = 8,
  float32 = 9,
  float64 = 10
};

/// One point attribute with all its values.
struct Column {
  std::string name;
  Element element = Element::uint8;
  unsigned length = 1; ///< values per record
  /// All records one after the other, `length` elements per record, in the machine's byte order. The client may store
  /// them in any form that gives them back exactly.
  std::vector<unsigned char> values{};
};

/// A whole database.
struct Contents {
  std::uint64_t records = 0;
  std::vector<Column> columns{};
  std::map<std::string, std::string> items{}; ///< metadata, text by name
};

/// Makes a database. The adapter defines this function.
///
/// \param contents  lives for the time of the call only
/// \param folder    exists, is empty and is removed after the check; its name may have any UTF-8 characters
/// \return the path that `Pointcloud::open` is given
/// \errors any exception fails the check. A client that cannot store an attribute with another length than its name
///         stands for raises `riegl::rdb::Error`.
/// \threads called from the main thread only
std::string makeDatabase(const Contents& contents, const std::string& folder);

} // namespace conformance
