// SPDX-License-Identifier: BSD-3-Clause
// What the fuzz targets of the imports share: any bytes give a complete database, or an error and no file.
#pragma once

#include "apps/rdbtool/import.h"
#include "apps/rdbtool/tool_error.h"
#include "container/format/error.h"
#include "tests/fuzz/input_file.h"

#include <filesystem>
#include <sstream>

namespace fuzz {

/// Imports the bytes as a file and checks the outcome.
/// \param import  called with the request and a stream for its notes
template <class Import>
int importAnyBytes(const std::uint8_t* bytes, std::size_t count, Import import) {
  rdbtool::ImportRequest request;
  request.input = inputFile(bytes, count);
  request.output = folder().path("output");
  std::filesystem::remove(request.output);
  bool imported = false;
  std::ostringstream notes;
  try {
    import(request, notes);
    imported = true;
  } catch (const rdbtool::ToolError& refusal) {
    require(refusal.what()[0] != '\0', "a refusal says why");
  } catch (const container::Error& refusal) {
    require(refusal.what()[0] != '\0', "a refusal says why");
  }
  require(std::filesystem::exists(request.output) == imported,
          "a file stands where, and only where, all is well");
  return 0;
}

} // namespace fuzz
