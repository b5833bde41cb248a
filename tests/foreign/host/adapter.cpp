// SPDX-License-Identifier: BSD-3-Clause
// Writes database files for the conformance test of the client.
#include "conformance/client.h"
#include "conformance/contents.h"

#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace {

std::string encoded(const std::string& text) {
  static constexpr char digits[] = "0123456789ABCDEF";
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80 && (std::isalnum(byte) != 0 || std::strchr("._-/:,{}[]\"", byte) != nullptr) &&
        byte != 0) {
      result += c;
    } else {
      result += {'%', digits[byte / 16], digits[byte % 16]};
    }
  }
  return result;
}

struct Form {
  const char* name;
  std::size_t bytes;
};

Form formOf(unsigned type) {
  switch (type) {
  case 1:
    return {"uint8", 1};
  case 3:
    return {"uint16", 2};
  case 4:
    return {"int16", 2};
  case 5:
    return {"uint32", 4};
  case 6:
    return {"int32", 4};
  case 7:
    return {"uint64", 8};
  case 9:
    return {"float32", 4};
  case 10:
    return {"float64", 8};
  default:
    throw std::invalid_argument("unknown type of elements");
  }
}

void writeValues(std::ostream& file, const unsigned char* bytes, std::size_t count, std::size_t size) {
  std::string line;
  for (std::size_t at = 0; at < count; ++at, bytes += size) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, bytes, size); // the lowest byte is the first one
    char digits[16];
    line += at == 0 ? "" : " ";
    line.append(digits, std::to_chars(digits, digits + sizeof digits, bits, 16).ptr);
  }
  file << line << '\n';
}

} // namespace

std::string conformance::makeDatabase(const Contents& contents, const std::string& folder) {
  const std::string path = folder + "/scan.quarry";
  std::ofstream file(path, std::ios::binary);
  file << "quarry-database 1\nrecords " << contents.records << '\n';
  for (const auto& [name, text] : contents.items) {
    file << "meta " << encoded(name) << ' ' << encoded(text) << '\n';
  }
  for (const Column& column : contents.columns) {
    const Form form = formOf(static_cast<unsigned>(column.element));
    file << "column " << form.name << ' ' << column.length << ' ' << encoded(column.name) << '\n';
    writeValues(file, reinterpret_cast<const unsigned char*>(column.values.data()),
                static_cast<std::size_t>(contents.records) * column.length, form.bytes);
  }
  file << "end\n";
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write " + path);
  }
  return path;
}
