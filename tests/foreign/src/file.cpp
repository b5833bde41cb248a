// SPDX-License-Identifier: BSD-3-Clause
// Reads database files.
#include "contents.h"
#include "quarry/database.h"

#include <bit>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace quarry {

namespace {

class Reader {
 public:
  Reader(const std::string& path, std::string text) : path_(path), text_(std::move(text)), rest_(text_) {}

  [[noreturn]] void fail(const std::string& expected) const {
    throw riegl::rdb::Error("The file is no database.",
                            path_ + ", line " + std::to_string(line_) + ": expected " + expected);
  }

  std::string_view line() {
    const std::size_t end = rest_.find('\n');
    ++line_;
    if (end == std::string_view::npos) {
      fail("a line that ends with a line feed");
    }
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    return line;
  }
  bool atEnd() const { return rest_.empty(); }

  /// The word in front of the next space; all, if there is none.
  static std::string_view word(std::string_view& line) {
    const std::size_t end = line.find(' ');
    const std::string_view word = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    return word;
  }

  template <class Number>
  Number number(std::string_view text, int base) const {
    Number value{};
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (failure != std::errc{} || end != text.data() + text.size()) {
      fail(std::string("a number of base ") + std::to_string(base) + ", not \"" +
           std::string(text.substr(0, 20)) + '"');
    }
    return value;
  }

  std::string decoded(std::string_view text) const {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
      if (text[at] != '%') {
        bytes += text[at];
      } else {
        bytes += static_cast<char>(number<unsigned char>(text.substr(at + 1, 2), 16));
        at += 2;
      }
    }
    return bytes;
  }

  template <class Bits, class Element>
  Values values(std::uint64_t count) {
    std::string_view line = this->line();
    if (count > line.size()) {
      fail(std::to_string(count) + " values"); // each has a digit
    }
    std::vector<Element> elements;
    elements.reserve(count);
    while (!line.empty()) {
      elements.push_back(std::bit_cast<Element>(number<Bits>(word(line), 16)));
    }
    if (elements.size() != count) {
      fail(std::to_string(count) + " values, not " + std::to_string(elements.size()));
    }
    return elements;
  }

  Values valuesOf(std::string_view type, std::uint64_t count) {
    if (type == "uint8")
      return values<std::uint8_t, std::uint8_t>(count);
    if (type == "uint16")
      return values<std::uint16_t, std::uint16_t>(count);
    if (type == "int16")
      return values<std::uint16_t, std::int16_t>(count);
    if (type == "uint32")
      return values<std::uint32_t, std::uint32_t>(count);
    if (type == "int32")
      return values<std::uint32_t, std::int32_t>(count);
    if (type == "uint64")
      return values<std::uint64_t, std::uint64_t>(count);
    if (type == "float32")
      return values<std::uint32_t, float>(count);
    if (type == "float64")
      return values<std::uint64_t, double>(count);
    fail("a type of elements, not \"" + std::string(type.substr(0, 20)) + '"');
  }

 private:
  const std::string& path_;
  std::string text_;
  std::string_view rest_;
  std::size_t line_ = 0;
};

std::string textOf(const std::string& path) {
  std::error_code failure;
  const std::filesystem::path name(path);
  if (!std::filesystem::is_regular_file(name, failure)) {
    throw riegl::rdb::Error("The database cannot be opened.", path + ": expected a file, found none");
  }
  std::ifstream file(name, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!file.good() && !file.eof()) {
    throw riegl::rdb::Error("The database cannot be read.", path);
  }
  return text;
}

} // namespace

std::shared_ptr<const Contents> readFile(const std::string& path) {
  Reader reader(path, textOf(path));
  if (reader.line() != "quarry-database 1") {
    reader.fail("quarry-database 1");
  }
  const auto contents = std::make_shared<Contents>();
  bool counted = false;
  for (std::string_view line = reader.line(); line != "end"; line = reader.line()) {
    const std::string_view kind = Reader::word(line);
    if (kind == "records" && !counted) {
      contents->records = reader.number<std::uint64_t>(line, 10);
      counted = true;
    } else if (kind == "meta") {
      const std::string name = reader.decoded(Reader::word(line));
      contents->items[name] = reader.decoded(line);
    } else if (kind == "column" && counted) {
      const std::string_view type = Reader::word(line);
      Column column;
      column.length = reader.number<std::uint32_t>(Reader::word(line), 10);
      const std::string name = reader.decoded(line);
      if (column.length == 0 || contents->records > UINT64_MAX / column.length) {
        reader.fail("a length of 1 or more");
      }
      column.values = reader.valuesOf(type, contents->records * column.length);
      contents->columns[name] = std::move(column);
    } else {
      reader.fail("records once, then meta, column or end");
    }
  }
  if (!counted || !reader.atEnd()) {
    reader.fail("records before, and nothing behind the end");
  }
  return contents;
}

} // namespace quarry
