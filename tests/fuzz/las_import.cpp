// Any bytes as a LAS file: a whole database comes of it, or a refusal and no file.
#include <filesystem>
#include <sstream>

#include "platform/rdb/error.h"
#include "tests/fuzz/input_file.h"
#include "tools/import.h"
#include "tools/tool_error.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  rdbtool::ImportRequest request;
  request.input = fuzz::inputFile(bytes, count);
  request.output = fuzz::folder().path("output");
  std::filesystem::remove(request.output);
  bool imported = false;
  std::ostringstream notes;
  try {
    rdbtool::importLas(request, notes);
    imported = true;
  } catch (const rdbtool::ToolError& refusal) {
    fuzz::require(refusal.what()[0] != '\0', "a refusal says why");
  } catch (const riegl::rdb::Error& refusal) {
    fuzz::require(refusal.what()[0] != '\0', "a refusal says why");
  }
  fuzz::require(std::filesystem::exists(request.output) == imported,
                "a file stands where, and only where, all is well");
  return 0;
}
