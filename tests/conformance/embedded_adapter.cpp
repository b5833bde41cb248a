// SPDX-License-Identifier: BSD-3-Clause
// Makes databases of the embedded client: BLOCK_ROWS records per block, encoded as BLOCK_ENCODING, columns of type uint8
// stored as STORED_ELEMENT.
#include "conformance/contents.h"
#include "container/format/element_type.h"
#include "container/write/writer.h"

#include <array>
#include <list>

namespace {

using conformance::Column;
using conformance::Element;
using container::ElementType;
using Stored = STORED_ELEMENT;

constexpr std::array names{"",      "uint8",  "int8",  "uint16",  "int16",  "uint32",
                           "int32", "uint64", "int64", "float32", "float64"};

ElementType storedType(const Column& column) {
  const bool small = column.element == Element::uint8;
  return *container::elementTypeNamed(small ? STORED_NAME : names[static_cast<std::size_t>(column.element)]);
}

/// The bytes of a column in its stored form.
std::vector<unsigned char> storedBytes(const Column& column) {
  if (column.element != Element::uint8) {
    return column.values;
  }
  const std::vector<Stored> widened(column.values.begin(), column.values.end());
  const auto* const bytes = reinterpret_cast<const unsigned char*>(widened.data());
  return {bytes, bytes + widened.size() * sizeof(Stored)};
}

} // namespace

std::string conformance::makeDatabase(const Contents& contents, const std::string& folder) {
  container::Writer writer(folder + "/scan.rdbx",
                           {BLOCK_ROWS, true, 2, container::BlockEncoding::BLOCK_ENCODING});
  std::list<std::vector<unsigned char>> values;
  std::vector<const void*> columns;
  for (const Column& column : contents.columns) {
    writer.addAttribute({column.name, storedType(column), column.length});
    columns.push_back(values.emplace_back(storedBytes(column)).data());
  }
  for (const auto& [name, value] : contents.items) {
    writer.setMetadata(name, value);
  }
  writer.write(contents.records, columns);
  writer.finish();
  return folder + "/scan.rdbx";
}
