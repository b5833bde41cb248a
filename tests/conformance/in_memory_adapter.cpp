// SPDX-License-Identifier: BSD-3-Clause
// Makes databases of the in-memory client.
#include "conformance/client.h"
#include "conformance/contents.h"

#include <list>

std::string conformance::makeDatabase(const Contents& contents, const std::string& folder) {
  static std::list<Contents> kept; // the client reads from here
  const Contents& copy = kept.emplace_back(contents);
  inMemory::Database database{{}, copy.records, copy.items};
  for (const Column& column : copy.columns) {
    database.columns[column.name] = {column.values.data(), static_cast<unsigned>(column.element),
                                     column.length};
  }
  inMemory::databases()[folder + "/scan"] = database;
  return folder + "/scan";
}
