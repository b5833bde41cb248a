// SPDX-License-Identifier: BSD-3-Clause
// Makes databases of the scripted client: one block, which calls of `next` read in pieces.
#include "conformance/contents.h"
#include "tests/scripted/script.h"

std::string conformance::makeDatabase(const Contents& contents, const std::string& folder) {
  scripted::Database database;
  database.metadata = contents.items;
  database.blocks = {static_cast<unsigned int>(contents.records)};
  for (const Column& column : contents.columns) {
    database.storedColumns[column.name] = {static_cast<unsigned>(column.element), column.length,
                                           column.values};
  }
  scripted::keep(folder + "/scan", std::move(database));
  return folder + "/scan";
}
