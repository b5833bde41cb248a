// SPDX-License-Identifier: BSD-3-Clause
// The canonical text of a catalogue and of its extents, and their checksums.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace container {

/// What a catalogue states of the whole database: one row of table `database`.
struct DatabaseRow {
  std::int64_t records = 0;
  std::int64_t blockRows = 0;
};

/// One row of table `attribute`. The texts are UTF-8 and belong to the caller; nothing stands for NULL.
struct AttributeRow {
  std::int64_t id = 0;
  std::string_view name;
  std::string_view type;
  std::int64_t length = 1;
  double scale = 1;
  double offset = 0;
  std::optional<std::string_view> unit;
  std::optional<std::string_view> title;
  std::optional<std::string_view> description;
};

/// One row of table `metadata`.
struct MetadataRow {
  std::string_view name;
  std::string_view value;
};

/// One row of table `block_index`.
struct BlockRow {
  std::int64_t attribute = 0;
  std::int64_t number = 0;
  std::optional<std::string_view> encoding;
  std::int64_t checksum = 0;
  std::int64_t bytes = 0;
};

/// One row of table `extent`.
struct ExtentRow {
  std::int64_t attribute = 0;
  std::int64_t number = 0;
  std::int64_t component = 0;
  std::optional<double> minimum;
  std::optional<double> maximum;
  std::int64_t missing = 0;
};

/// The line that stands in front of a catalogue's text.
inline constexpr std::string_view catalogueHeading = "rdb2nimbra 2\n";

/// Append the line of a row, its line feed included. Integers are decimal; a text is its length in bytes, a colon and
/// its bytes; a real is the 16 hexadecimal digits of its bits, -0.0 as 0.0; NULL is `-`; blanks separate them.
/// \threads safe on distinct texts
void appendLine(const DatabaseRow& row, std::string& text);
void appendLine(const AttributeRow& row, std::string& text);
void appendLine(const MetadataRow& row, std::string& text);
void appendLine(const BlockRow& row, std::string& text);
void appendLine(const ExtentRow& row, std::string& text);

/// The CRC-32 of a canonical text, which is never held as a whole. Not thread-safe.
///
/// A catalogue's begins with catalogueHeading and takes the database, the attributes by id, the metadata by the bytes
/// of their names, and the blocks by attribute and number, in this order. That of the extents has no heading and takes
/// them by attribute, number and component. The order is the caller's affair.
class TextChecksum {
 public:
  /// \param heading  what the text begins with
  explicit TextChecksum(std::string_view heading = {}) : pending(heading) {}

  /// Adds the line of a row: DatabaseRow, AttributeRow, MetadataRow, BlockRow or ExtentRow.
  template <class Row>
  void add(const Row& row) {
    appendLine(row, pending);
    if (pending.size() >= pendingBytes) {
      takePending();
    }
  }

  /// The checksum of all lines so far; more may follow.
  std::uint32_t value();

 private:
  static constexpr std::size_t pendingBytes = 16384;

  void takePending();

  std::string pending;
  std::uint32_t checksum = 0;
};

} // namespace container
