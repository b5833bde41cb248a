// SPDX-License-Identifier: BSD-3-Clause
// Copies databases through cursor and writer, values as they are stored.
#include "apps/rdbtool/recode.h"

#include "apps/common/interruption.h"
#include "apps/common/printable_text.h"
#include "apps/rdbtool/input_file.h"
#include "apps/rdbtool/output_name.h"
#include "apps/rdbtool/tool_error.h"
#include "container/read/cursor.h"
#include "container/read/database.h"

#include <algorithm>
#include <ostream>
#include <vector>

namespace rdbtool {

namespace {

using container::Attribute;
using container::Database;
using container::Writer;

constexpr std::uint64_t mostBatchBytes = std::uint64_t{256} << 20;

/// Buffers for the stored values of all columns, some records at a time.
class Batch {
 public:
  explicit Batch(const Database& database) : cursor(database) {
    std::uint64_t recordBytes = 1;
    for (std::size_t i = 0; i < database.attributeCount(); ++i) {
      recordBytes += database.attribute(i).recordBytes();
    }
    // Whole blocks where they fit, so that the writer takes them without a copy.
    rowCapacity = std::min(database.blockRows(), std::max<std::uint64_t>(database.recordCount(), 1));
    rowCapacity = std::clamp<std::uint64_t>(mostBatchBytes / recordBytes, 1, rowCapacity);
    for (std::size_t i = 0; i < database.attributeCount(); ++i) {
      const Attribute& attribute = database.attribute(i);
      buffers.emplace_back(static_cast<std::size_t>(rowCapacity * attribute.recordBytes()));
      cursor.bindStored(attribute.name, buffers.back().data());
      pointers.push_back(buffers.back().data());
    }
  }

  /// Reads the next records. \return how many, 0 at the end
  std::uint64_t next() { return cursor.next(rowCapacity); }
  /// One pointer per column to the records that were read last.
  const std::vector<const void*>& columns() const { return pointers; }

 private:
  container::Cursor cursor;
  std::uint64_t rowCapacity = 1;
  std::vector<std::vector<unsigned char>> buffers;
  std::vector<const void*> pointers;
};

void copyRecords(const Database& database, Writer& writer) {
  Batch batch(database);
  while (const std::uint64_t rows = batch.next()) {
    if (apps::interrupted()) {
      throw failed("interrupted before the database was written");
    }
    writer.write(rows, batch.columns());
  }
}

void copy(const Database& database, const RecodeRequest& request) {
  const apps::InterruptionWatch watch;
  container::WriterSettings settings;
  settings.encoding = request.encoding;
  settings.blockRows = request.blockRows.value_or(static_cast<std::uint32_t>(database.blockRows()));
  Writer writer(request.output, settings);
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    const Attribute& attribute = database.attribute(i);
    writer.addAttribute(attribute, database.scaling(attribute.name));
  }
  for (const std::string& name : database.itemNames()) {
    writer.setMetadata(name, database.item(name).value_or(""));
  }
  copyRecords(database, writer);
  writer.finish();
}

} // namespace

void recode(const RecodeRequest& request, std::ostream& notes) {
  requireReadableFile(request.input);
  requireDistinct(request.input, request.output);
  copy(Database(request.input), request);
  noteOutputName(contentByName(request.input), request.output, notes);
}

void upgrade(const std::string& input, const std::string& output, std::ostream& notes) {
  requireReadableFile(input);
  if (!output.empty()) {
    requireDistinct(input, output);
  }
  const Database database(input);
  if (database.version() == 1) {
    copy(database, {input, output.empty() ? input : output, container::BlockEncoding::raw, {}});
    if (!output.empty()) {
      noteOutputName(contentByName(input), output, notes);
    }
    return;
  }
  const std::string found =
      ": expected a file of version 1, found version " + std::to_string(database.version());
  if (!output.empty()) {
    throw failed(input + found + "; use recode to write a copy");
  }
  apps::printLine(notes, input + found + "; unchanged");
}

} // namespace rdbtool
