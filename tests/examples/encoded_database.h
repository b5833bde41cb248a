// SPDX-License-Identifier: BSD-3-Clause
// A database with a column for each encoding that the format has.
#pragma once

#include "container/format/part_checksum.h"
#include "container/write/catalogue_rows.h"
#include "container/write/output_file.h"
#include "tests/container/codec/blocks.h"

#include <algorithm>
#include <deque>
#include <string>

namespace exampletest {

inline constexpr std::uint64_t recordsOfEncodings = 90;
inline constexpr std::uint32_t blockRowsOfEncodings = 50;
inline constexpr std::uint32_t recordsPerPiece = 20;

/// Adds a column of `length` values per record, whose blocks are encoded as `options` state.
inline void addColumn(const std::string& name, container::ElementType type, const blocks::Bytes& records,
                      container::codec::EncodingOptions options, container::OutputFile& file,
                      std::deque<container::WrittenColumn>& columns) {
  container::WrittenColumn& column = columns.emplace_back();
  column.attribute.name = name;
  column.attribute.type = type;
  column.attribute.length = 3;
  options.recordsPerPiece = recordsPerPiece;
  const std::size_t recordBytes = column.attribute.recordBytes();
  for (std::uint64_t first = 0; first < recordsOfEncodings; first += blockRowsOfEncodings) {
    const std::uint64_t count = std::min<std::uint64_t>(blockRowsOfEncodings, recordsOfEncodings - first);
    const blocks::BlockShape shape{container::valueFormat(type), 3, count};
    const std::byte* const from = records.data() + first * recordBytes;
    const blocks::Bytes data = container::codec::encodeBlock(from, shape, options);
    const std::uint32_t checksum = container::continuedChecksum(0, data.data(), data.size());
    file.insertBlock(static_cast<std::int64_t>(columns.size()), column.blocks.size(), data.data(),
                     data.size(), checksum);
    column.blocks.push_back({true, checksum, data.size(), {}});
  }
}

/// Writes two blocks of three pieces and two for every type, filter and codec, scaled where the type is real.
inline void writeEveryEncoding(const std::string& path) {
  container::OutputFile file(path, 2);
  std::deque<container::WrittenColumn> columns;
  const std::vector<blocks::Scaling> scaling{{0.001, 4700}, {0.25, 0}, {-1e-7, 1}};
  for (const blocks::Filter filter : blocks::everyFilter) {
    for (const blocks::Codec codec : blocks::everyCodec) {
      const std::string name =
          std::to_string(static_cast<int>(filter)) + std::to_string(static_cast<int>(codec));
      for (std::size_t i = 0; i < container::elementTypeCount; ++i) {
        const auto type = static_cast<container::ElementType>(i);
        const blocks::Bytes values = blocks::smoothBytes(recordsOfEncodings * 3 * container::byteSize(type));
        addColumn(std::string(container::name(type)) + name, type, values, {filter, codec, 3}, file, columns);
      }
      addColumn("scaled float32 " + name, container::ElementType::float32,
                blocks::bytesOf(blocks::gridValues<float>(scaling, recordsOfEncodings, 1000)),
                {filter, codec, 3, scaling}, file, columns);
      addColumn("scaled float64 " + name, container::ElementType::float64,
                blocks::bytesOf(blocks::gridValues<double>(scaling, recordsOfEncodings)),
                {filter, codec, 3, scaling}, file, columns);
    }
  }
  std::vector<const container::WrittenColumn*> written;
  for (const container::WrittenColumn& column : columns) {
    written.push_back(&column);
  }
  insertCatalogue(file, {recordsOfEncodings, blockRowsOfEncodings}, written, {{"item", "text"}});
  file.finish();
}

} // namespace exampletest
