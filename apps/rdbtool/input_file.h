// SPDX-License-Identifier: BSD-3-Clause
// An input file, read by position.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <span>
#include <string>
#include <vector>

namespace rdbtool {

/// Reads byte ranges of one regular file.
///
/// \errors  ToolError with ExitStatus::unreadable, naming the file
/// \threads one thread per object
class InputFile {
 public:
  /// Opens the file, which must be a regular one.
  explicit InputFile(const std::string& filePath);

  /// The path as it was given.
  const std::string& path() const noexcept { return name; }
  /// Size of the file when it was opened, in bytes.
  std::uint64_t byteSize() const noexcept { return size; }

  /// Fills `target` from position `offset`; a file that ends earlier is an error.
  void readAt(std::uint64_t offset, std::span<std::byte> target);
  /// At most `byteCount` bytes from `offset`: fewer where the file ends earlier.
  std::vector<std::byte> atMost(std::uint64_t offset, std::size_t byteCount);

 private:
  std::string name;
  std::ifstream stream;
  std::uint64_t size = 0;
};

/// Throws ToolError with ExitStatus::unreadable unless `path` is a regular file that opens for reading.
void requireReadableFile(const std::string& path);

/// Throws ToolError with ExitStatus::wrongUse where both paths lead to the same file, which need not exist.
void requireDistinct(const std::string& other, const std::string& output);

/// The value of type T at the start of `bytes`, stored in little-endian order.
template <typename T>
T littleEndian(const std::byte* bytes) {
  T value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

} // namespace rdbtool
