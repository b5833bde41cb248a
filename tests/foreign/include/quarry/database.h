// SPDX-License-Identifier: BSD-3-Clause
// Client of text databases.
//
// A database is a file of lines that end with a line feed. NAME and TEXT are percent-encoded bytes (%0A): all but
// letters, digits and a few marks. Numbers in the lines are decimal.
//
//   quarry-database 1             the first line
//   records N
//   meta NAME TEXT                any number of times
//   column TYPE LENGTH NAME       any number of times; LENGTH values per record, 1 or more
//   VALUE VALUE ...               the line behind each column: N * LENGTH values, record by record
//   end                           the last line
//
// TYPE is one of uint8, uint16, int16, uint32, int32, uint64, float32, float64. A VALUE is the bit pattern of the
// element as hexadecimal number, without leading zeros if one likes: ff is the int16 255 and ffff the int16 -1,
// 3ff0000000000000 the float64 1.
#pragma once

#include <exception>
#include <memory>
#include <string>

namespace quarry {
struct Contents; // a database in memory
struct Reading;  // the state of a query
} // namespace quarry

namespace riegl::rdb {

class __attribute__((visibility("default"))) Error : public std::exception {
 public:
  Error(const std::string& what, const std::string& details);
  Error(const Error&) noexcept;
  Error& operator=(const Error&) noexcept;
  ~Error() override;
  const char* what() const noexcept override;
  const char* details() const noexcept;

 private:
  struct Texts;
  std::shared_ptr<const Texts> texts_;
};

class Context {
 public:
  Context(const std::string& logFolder, const std::string& logLevel); // there is no log
};

namespace pointcloud {

struct OpenSettings {
  OpenSettings() {}
};

enum class DataType : unsigned int {
  byte1 = 1,
  word2 = 3,
  signed2 = 4,
  word4 = 5,
  signed4 = 6,
  word8 = 7,
  real4 = 9,
  real8 = 10,
};

class MetaData {
 public:
  bool exists(const std::string& name) const;
  std::string get(const std::string& name, const std::string& fallback = {}) const;

 private:
  friend struct Catalogue;
  std::shared_ptr<const quarry::Contents> contents_;
};

class PointAttributes {
 public:
  bool exists(const std::string& name) const;

 private:
  friend struct Catalogue;
  std::shared_ptr<const quarry::Contents> contents_;
};

class QuerySelect {
 public:
  explicit QuerySelect(std::shared_ptr<quarry::Reading> reading);
  void bind(const std::string& name, DataType type, void* buffer, int stride = 0);
  unsigned int next(unsigned int count);

 private:
  std::shared_ptr<quarry::Reading> reading_;
};

/// What an open database answers without a query.
struct Catalogue {
  MetaData items;
  PointAttributes attributes;
  std::shared_ptr<const quarry::Contents> contents;

  void use(std::shared_ptr<const quarry::Contents> opened);
};

} // namespace pointcloud

class Pointcloud {
 public:
  explicit Pointcloud(Context context);
  Pointcloud(const Pointcloud&) = delete;
  Pointcloud& operator=(const Pointcloud&) = delete;
  ~Pointcloud();
  void open(const std::string& path, const pointcloud::OpenSettings& settings);
  pointcloud::MetaData& metaData();
  const pointcloud::MetaData& metaData() const;
  pointcloud::PointAttributes& pointAttribute() const;
  pointcloud::QuerySelect select(const std::string& filter = {});

 private:
  std::unique_ptr<pointcloud::Catalogue> catalogue_;
};

} // namespace riegl::rdb
