// SPDX-License-Identifier: BSD-3-Clause
// Detects the format of an imported file and runs its import.
#include "apps/rdbtool/import.h"

#include "apps/rdbtool/input_file.h"
#include "apps/rdbtool/las_header.h"
#include "apps/rdbtool/output_name.h"
#include "apps/rdbtool/tool_error.h"

#include <algorithm>
#include <filesystem>

namespace rdbtool {

namespace {

std::string lowerExtension(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return extension;
}

ImportFormat formatOf(const std::string& path) {
  InputFile file(path);
  const std::vector<std::byte> start = file.atMost(0, 4);
  const std::string extension = lowerExtension(path);
  if ((start.size() == 4 && fixedText(start.data(), 4) == "LASF") || extension == ".las" ||
      extension == ".laz") {
    return ImportFormat::las;
  }
  if (extension == ".sbet" || extension == ".out") {
    return ImportFormat::sbet;
  }
  throw failed(path + ": expected the signature LASF or one of the extensions .las, .sbet, .out, found "
                      "neither; name the format with --format");
}

} // namespace

std::uint64_t importFile(const ImportRequest& request, std::ostream& notes) {
  requireReadableFile(request.input);
  requireDistinct(request.input, request.output);
  const ImportFormat format = request.format ? *request.format : formatOf(request.input);
  const bool las = format == ImportFormat::las;
  const std::uint64_t records = las ? importLas(request, notes) : importSbet(request, notes);
  noteOutputName(las ? DatabaseContent::points : DatabaseContent::trajectory, request.output, notes);
  return records;
}

} // namespace rdbtool
