// SPDX-License-Identifier: BSD-3-Clause
// Any bytes as a database file: every item and every column is read, and the whole file is verified, or an Error says
// why not.
#include "container/format/error.h"
#include "container/read/verify.h"
#include "platform/client/rdb.h"
#include "tests/fuzz/input_file.h"

#include <vector>

namespace {

constexpr unsigned int recordsAtOnce = 16;

void readEverything(const std::string& path) {
  using namespace riegl::rdb;
  Pointcloud database{Context()};
  pointcloud::OpenSettings settings;
  settings.threadCount = 1;
  database.open(path, settings);
  for (const std::string& name : database.metaData().list()) {
    // Where the index of a damaged file contradicts its table, a listed item may not be found.
    const bool found = database.metaData().exists(name);
    fuzz::require(found || database.metaData().get(name, "none") == "none",
                  "an absent item gives the fallback");
    database.metaData().get(name);
  }
  pointcloud::QuerySelect query = database.select();
  std::vector<std::vector<double>> buffers;
  for (const std::string& name : database.pointAttribute().list()) {
    buffers.emplace_back(std::size_t{recordsAtOnce} * database.pointAttribute().get(name).length);
    query.bind(name, pointcloud::DataType::FLOAT64, buffers.back().data());
  }
  // A file without columns may claim any number of records.
  std::uint64_t records = 0;
  for (unsigned int read = 1; read != 0 && records < 10000; records += read) {
    read = query.next(recordsAtOnce);
    fuzz::require(read <= recordsAtOnce, "no more records than asked for");
  }
  fuzz::require(records <= database.recordCount(), "no more records than the database has");
}

void verifyEverything(const std::string& path) {
  try {
    container::verify(path, [](const std::string& what, const std::string& details) {
      fuzz::require(!what.empty() && !details.empty(), "a finding says what happened, and to what");
    });
  } catch (const container::Error& error) {
    fuzz::require(error.what()[0] != '\0', "an error says what happened");
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string path = fuzz::inputFile(bytes, count);
  verifyEverything(path);
  try {
    readEverything(path);
  } catch (const riegl::rdb::Error& error) {
    fuzz::require(error.what()[0] != '\0', "an error says what happened");
  }
  return 0;
}
