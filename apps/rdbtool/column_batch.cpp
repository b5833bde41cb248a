// SPDX-License-Identifier: BSD-3-Clause
// Buffers for the columns of a database that is being written, a bounded number of rows at a time.
#include "apps/rdbtool/column_batch.h"

#include "apps/common/interruption.h"
#include "apps/rdbtool/tool_error.h"

namespace rdbtool {

Attribute attribute(const std::string& name, ElementType type, const std::string& unit, unsigned length) {
  Attribute spec;
  spec.name = name;
  spec.type = type;
  spec.unit = unit;
  spec.length = length;
  return spec;
}

std::size_t ColumnBatch::add(const Attribute& spec, const std::vector<SourceScaling>& source) {
  writer.addAttribute(spec, source);
  const std::size_t rowBytes = byteSize(spec.type) * spec.length;
  columns.push_back({rowBytes, std::vector<std::byte>(rowBytes * rowCapacity)});
  return columns.size() - 1;
}

void ColumnBatch::write(std::size_t rows) {
  if (apps::interrupted()) {
    throw failed("interrupted before the database was written");
  }
  if (rows == 0) {
    return;
  }
  std::vector<const void*> pointers;
  for (const Column& column : columns) {
    pointers.push_back(column.bytes.data());
  }
  writer.write(rows, pointers);
}

} // namespace rdbtool
