// SPDX-License-Identifier: BSD-3-Clause
// Copies databases through cursor and writer, values as they are stored.
#include "apps/rdbtool/recode.h"

#include "apps/common/interruption.h"
#include "apps/common/printable_text.h"
#include "apps/rdbtool/input_file.h"
#include "apps/rdbtool/tool_error.h"
#include "container/read/cursor.h"
#include "container/read/database.h"

#include <algorithm>
#include <ostream>

namespace rdbtool {

namespace {

constexpr std::uint64_t mostBatchBytes = std::uint64_t{256} << 20;

void copyRecords(const container::Database& database, container::Writer& writer) {
  std::uint64_t recordBytes = 1;
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    writer.addAttribute(database.attribute(i));
    recordBytes += database.attribute(i).recordBytes();
  }
  const std::uint64_t rowsAtOnce =
      std::clamp<std::uint64_t>(mostBatchBytes / recordBytes, 1, std::min(database.blockRows(), database.recordCount() + 1));
  container::Cursor cursor(database);
  std::vector<std::vector<unsigned char>> buffers;
  std::vector<const void*> columns;
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    const container::Attribute& attribute = database.attribute(i);
    buffers.emplace_back(static_cast<std::size_t>(rowsAtOnce * attribute.recordBytes()));
    cursor.bindStored(attribute.name, buffers.back().data());
    columns.push_back(buffers.back().data());
  }
  while (const std::uint64_t rows = columns.empty() ? 0 : cursor.next(rowsAtOnce)) {
    writer.write(rows, columns);
    if (apps::interrupted()) {
      throw failed("interrupted before the database was written");
    }
  }
}

} // namespace

void recode(const RecodeRequest& request) {
  requireReadableFile(request.input);
  const container::Database database(request.input);
  const apps::InterruptionWatch watch;
  container::WriterSettings settings = request.writer;
  settings.blockRows = request.blockRows.value_or(static_cast<std::uint32_t>(database.blockRows()));
  container::Writer writer(request.output, settings);
  for (const std::string& name : database.itemNames()) {
    writer.setMetadata(name, database.item(name).value_or(""));
  }
  copyRecords(database, writer);
  writer.finish();
}

void upgrade(const std::vector<std::string>& files, std::ostream& notes) {
  for (const std::string& file : files) {
    requireReadableFile(file);
    const int version = container::Database(file, 1).version();
    if (version == 1) {
      recode({file, file, {}, {}});
    }
    apps::printLine(notes, file + (version == 1 ? ": version 2 now" : ": version 2 already"));
  }
}

} // namespace rdbtool
