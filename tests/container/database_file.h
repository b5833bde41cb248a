// SPDX-License-Identifier: BSD-3-Clause
// The small language in which the tests make database files, damage them and read them.
#pragma once

#include "container/format/element_traits.h"
#include "container/format/error.h"
#include "container/read/cursor.h"
#include "container/read/database.h"
#include "container/write/writer.h"
#include "tests/support/temp_dir.h"

#include <cstdint>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace containertest {

using container::Attribute;
using container::Cursor;
using container::Database;
using container::ElementType;
using container::Error;
using container::Writer;
using container::WriterSettings;

/// Writes one column, whose values are given whole.
template <class Element>
void writeColumn(const std::string& path, const Attribute& attribute, const std::vector<Element>& values,
                 WriterSettings settings = {}) {
  Writer writer(path, settings);
  writer.addAttribute(attribute);
  writer.write(values.size() / attribute.length, {values.data()});
  writer.finish();
}

/// Settings for a file of version 1, whose tables may be changed without a checksum noticing.
inline WriterSettings version1(std::uint32_t blockRows, bool checksums = true) {
  return {blockRows, checksums, 1};
}

/// 10 records in blocks of 4: riegl.xyz (3 double, 0 to 29) and riegl.class (uint8, 0 to 9), one item.
inline void writeSample(const std::string& path, const WriterSettings& settings) {
  Writer writer(path, settings);
  writer.addAttribute({"riegl.xyz", ElementType::float64, 3, 1, 0, "m", "XYZ", "Cartesian coordinates"});
  writer.addAttribute({"riegl.class", ElementType::uint8});
  writer.setMetadata("riegl.time_base", "{}");
  std::vector<double> points;
  std::vector<unsigned char> classes;
  for (unsigned record = 0; record < 10; ++record) {
    points.insert(points.end(), {3.0 * record, 3.0 * record + 1, 3.0 * record + 2});
    classes.push_back(static_cast<unsigned char>(record));
  }
  writer.write(10, {points.data(), classes.data()});
  writer.finish();
}

/// The same, in version 1.
inline void writeSample(const std::string& path, bool checksums = true) {
  writeSample(path, version1(4, checksums));
}

/// Runs statements on a file the way any other program might; writable_schema is on.
inline void execute(const std::string& path, const std::string& sql) {
  sqlite3* opened = nullptr;
  const int status = sqlite3_open(path.c_str(), &opened);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(opened, &sqlite3_close);
  char* message = nullptr;
  if (status != SQLITE_OK || sqlite3_exec(opened, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
    const std::string text = message == nullptr ? "cannot open " + path : message;
    sqlite3_free(message);
    throw std::runtime_error(text + " in: " + sql);
  }
}

inline std::vector<char> bytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeBytes(const std::string& path, const std::vector<char>& bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// All values of one column as elements of the type asked for, `atOnce` records per call of next.
template <class Element>
std::vector<Element> readColumn(const std::string& path, const std::string& name,
                                std::uint64_t atOnce = 1000) {
  const Database database(path);
  const unsigned length = database.require(name).length;
  Cursor cursor(database);
  std::vector<Element> all;
  std::vector<Element> part(atOnce * length);
  cursor.bind(name, container::elementTypeOf<Element>, part.data());
  while (const std::uint64_t count = cursor.next(atOnce)) {
    all.insert(all.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count * length));
  }
  return all;
}

/// "what (details)" of the Failure that `action` raises, with the directory taken out; "no error" without one.
template <class Failure = Error>
std::string errorOf(const support::TempDir& directory, const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& error) {
    std::string text = std::string(error.what()) + " (" + error.details() + ")";
    const std::string prefix = directory.root().string() + "/";
    for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix)) {
      text.erase(at, prefix.size());
    }
    return text;
  }
  return "no error";
}

} // namespace containertest
