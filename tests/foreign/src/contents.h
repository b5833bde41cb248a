// SPDX-License-Identifier: BSD-3-Clause
// A database in memory, and how it is read from a file.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace quarry {

using Values = std::variant<std::vector<std::uint8_t>, std::vector<std::uint16_t>, std::vector<std::int16_t>,
                            std::vector<std::uint32_t>, std::vector<std::int32_t>, std::vector<std::uint64_t>,
                            std::vector<float>, std::vector<double>>;

struct Column {
  std::uint64_t length = 0; // values per record
  Values values;
};

struct Contents {
  std::uint64_t records = 0;
  std::map<std::string, std::string> items;
  std::map<std::string, Column> columns;
};

std::shared_ptr<const Contents> readFile(const std::string& path); // raises riegl::rdb::Error

} // namespace quarry
