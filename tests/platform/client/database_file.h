// SPDX-License-Identifier: BSD-3-Clause
// The small language in which the tests make databases, damage them and read them.
#pragma once

#include "container/write/writer.h"
#include "platform/client/rdb.h"
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

namespace rdbtest {

using riegl::rdb::Error;
using riegl::rdb::Pointcloud;
using riegl::rdb::embedded::AttributeSpec;
using riegl::rdb::embedded::StoredType;
using riegl::rdb::embedded::Writer;
using riegl::rdb::embedded::WriterSettings;
using riegl::rdb::pointcloud::DataType;
using riegl::rdb::pointcloud::OpenSettings;
using riegl::rdb::pointcloud::QuerySelect;

/// Writes one column, whose values are given whole.
template <class Element>
void writeColumn(const std::string& path, const AttributeSpec& spec, const std::vector<Element>& values,
                 WriterSettings settings = {}) {
  Writer writer(path, settings);
  writer.addAttribute(spec);
  writer.write(values.size() / spec.length, {values.data()});
  writer.finish();
}

/// 10 records in blocks of 4: riegl.xyz (3 double, 0 to 29) and riegl.class (uint8, 0 to 9), one item.
inline void writeSample(const std::string& path, bool checksums = true) {
  Writer writer(path, {4, checksums});
  writer.addAttribute({"riegl.xyz", StoredType::float64, 3, 1, 0, "m", "XYZ", "Cartesian coordinates"});
  writer.addAttribute({"riegl.class", StoredType::uint8});
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

inline std::unique_ptr<Pointcloud> open(const std::string& path, unsigned threads = 0) {
  auto database = std::make_unique<Pointcloud>(riegl::rdb::Context("", ""));
  OpenSettings settings;
  settings.threadCount = threads;
  database->open(path, settings);
  return database;
}

/// All values of one column, `atOnce` records a call of next.
template <class Element>
std::vector<Element> readColumn(const std::string& path, const std::string& name, DataType type,
                                unsigned atOnce = 1000) {
  const auto database = open(path);
  const unsigned length = database->pointAttribute().get(name).length;
  QuerySelect query = database->select("");
  std::vector<Element> all;
  std::vector<Element> part(std::size_t{atOnce} * length);
  query.bind(name, type, part.data(), 0);
  while (const unsigned count = query.next(atOnce)) {
    all.insert(all.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count) * length);
  }
  return all;
}

/// "what (details)" of the Error that `action` raises, with the directory taken out; "no error" without one.
inline std::string errorOf(const support::TempDir& directory, const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    std::string text = std::string(error.what()) + " (" + error.details() + ")";
    const std::string prefix = directory.root().string() + "/";
    for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix)) {
      text.erase(at, prefix.size());
    }
    return text;
  }
  return "no error";
}

} // namespace rdbtest
