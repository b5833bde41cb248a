// SPDX-License-Identifier: BSD-3-Clause
// An input file, read by position.
#include "apps/rdbtool/input_file.h"

#include "apps/common/target_path.h"
#include "apps/rdbtool/tool_error.h"

#include <algorithm>
#include <bit>
#include <filesystem>
#include <system_error>

static_assert(std::endian::native == std::endian::little,
              "values are copied from files without swapping bytes");

namespace rdbtool {

namespace fs = std::filesystem;

void requireReadableFile(const std::string& path) {
  std::error_code problem;
  const fs::file_status status = fs::status(path, problem);
  if (!fs::exists(status)) {
    throw unreadable(path + ": expected a file to read, found none");
  }
  if (!fs::is_regular_file(status)) {
    throw unreadable(path + ": expected a regular file, found " +
                     (fs::is_directory(status) ? "a directory" : "something else"));
  }
  if (!std::ifstream(path, std::ios::binary).is_open()) {
    throw unreadable(path + ": expected a readable file, found that it cannot be opened");
  }
}

void requireDistinct(const std::string& other, const std::string& output) {
  if (apps::sameFile(other, output)) {
    throw wrongUse(output + ": expected an output other than " + other + ", found the same file");
  }
}

InputFile::InputFile(const std::string& filePath) : name(filePath) {
  requireReadableFile(filePath);
  stream.open(filePath, std::ios::binary);
  std::error_code problem;
  size = fs::file_size(filePath, problem);
  if (!stream || problem) {
    throw unreadable(name + ": expected a readable file, found that it cannot be opened");
  }
}

void InputFile::readAt(std::uint64_t offset, std::span<std::byte> target) {
  stream.clear();
  stream.seekg(static_cast<std::streamoff>(offset));
  stream.read(reinterpret_cast<char*>(target.data()), static_cast<std::streamsize>(target.size()));
  if (static_cast<std::size_t>(stream.gcount()) != target.size()) {
    throw unreadable(name + ": expected " + std::to_string(target.size()) + " bytes at " +
                     std::to_string(offset) + ", found " + std::to_string(stream.gcount()));
  }
}

std::vector<std::byte> InputFile::atMost(std::uint64_t offset, std::size_t byteCount) {
  const std::uint64_t there = offset < size ? size - offset : 0;
  std::vector<std::byte> bytes(static_cast<std::size_t>(std::min<std::uint64_t>(there, byteCount)));
  if (!bytes.empty()) {
    readAt(offset, bytes);
  }
  return bytes;
}

} // namespace rdbtool
