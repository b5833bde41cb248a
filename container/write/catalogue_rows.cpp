// SPDX-License-Identifier: BSD-3-Clause
// Inserts the rows of a catalogue in the order of its text.
#include "container/write/catalogue_rows.h"

#include "container/format/file_format.h"

#include <optional>
#include <string_view>

namespace container {
namespace {

AttributeRow rowOf(std::int64_t id, const Attribute& attribute) {
  const auto unlessEmpty = [](const std::string& text) {
    return text.empty() ? std::nullopt : std::optional<std::string_view>(text);
  };
  return {id,
          attribute.name,
          name(attribute.type),
          attribute.length,
          attribute.scale,
          attribute.offset,
          unlessEmpty(attribute.unit),
          unlessEmpty(attribute.title),
          unlessEmpty(attribute.description)};
}

// Calls `action` with attribute id, number of the block and block, in the order of the table's key.
template <class Action>
void forEachBlock(const std::vector<const WrittenColumn*>& columns, Action&& action) {
  std::int64_t id = 0;
  for (const WrittenColumn* column : columns) {
    ++id;
    std::int64_t number = 0;
    for (const WrittenBlock& block : column->blocks) {
      action(id, number++, block);
    }
  }
}

std::optional<std::uint32_t> insertExtents(OutputFile& file,
                                           const std::vector<const WrittenColumn*>& columns) {
  TextChecksum text;
  bool hasExtents = false;
  forEachBlock(columns, [&](std::int64_t id, std::int64_t number, const WrittenBlock& block) {
    std::int64_t component = 0;
    for (const ComponentExtent& extent : block.extents) {
      const ExtentRow row{
          id, number, component++, extent.minimum, extent.maximum, static_cast<std::int64_t>(extent.missing)};
      file.insertExtent(row);
      text.add(row);
      hasExtents = true;
    }
  });
  return hasExtents ? std::optional(text.value()) : std::nullopt;
}

} // namespace

void insertCatalogue(OutputFile& file, const DatabaseRow& layout,
                     const std::vector<const WrittenColumn*>& columns,
                     const std::map<std::string, std::string>& items) {
  TextChecksum text(catalogueHeading);
  text.add(layout);
  std::int64_t id = 0;
  for (const WrittenColumn* column : columns) {
    file.insertAttribute(++id, column->attribute);
    text.add(rowOf(id, column->attribute));
  }
  for (const auto& [itemName, value] : items) {
    file.insertItem(itemName, value);
    text.add(MetadataRow{itemName, value});
  }
  forEachBlock(columns, [&](std::int64_t attribute, std::int64_t number, const WrittenBlock& block) {
    const auto encoding = block.isEncoded ? std::optional<std::string_view>(piecesEncoding) : std::nullopt;
    const BlockRow row{attribute, number, encoding, block.checksum, static_cast<std::int64_t>(block.bytes)};
    file.insertIndex(row);
    text.add(row);
  });
  const auto extentChecksum = insertExtents(file, columns);
  file.insertLayout(layout, text.value(), extentChecksum);
}

} // namespace container
