// SPDX-License-Identifier: BSD-3-Clause
// Blocks that a script decodes, and blocks that it encodes: nothing in it is shared with the code here.
#include "container/codec/piece_decoder.h"
#include "tests/container/codec/blocks.h"
#include "tests/support/file_content.h"
#include "tests/support/temp_dir.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

namespace {

using blocks::Bytes;
using blocks::recordBytes;
using container::NumberKind;
using container::codec::BlockShape;
using container::codec::Codec;
using container::codec::EncodingOptions;
using container::codec::Filter;
using container::codec::PieceDecoder;
using container::codec::PieceHeader;
using container::codec::Scaling;

struct Case {
  std::string name;
  BlockShape shape;
  EncodingOptions options;
  Bytes records;
};

void addPlainCases(const BlockShape& shape, std::vector<Case>& cases) {
  for (const Filter filter : blocks::everyFilter) {
    for (const Codec codec : blocks::everyCodec) {
      const std::size_t bytes = shape.records * recordBytes(shape);
      cases.push_back({std::to_string(cases.size()),
                       shape,
                       {filter, codec, 3, {}, 40},
                       codec == Codec::none ? blocks::randomBytes(bytes) : blocks::smoothBytes(bytes)});
    }
  }
}

template <class Real>
void addScaledCases(std::vector<Case>& cases) {
  const BlockShape shape{{NumberKind::real, sizeof(Real)}, 3, 90};
  const std::vector<Scaling> scaling(3, Scaling{0.01, 4700});
  for (const Filter filter : blocks::everyFilter) {
    for (const Codec codec : blocks::everyCodec) {
      cases.push_back({std::to_string(cases.size()),
                       shape,
                       {filter, codec, 9, scaling, 40},
                       blocks::bytesOf(blocks::gridValues<Real>(scaling, 90, 400000))});
    }
  }
}

std::vector<Case> everyCase() {
  std::vector<Case> cases;
  for (const container::ValueFormat& format : blocks::everyFormat) {
    for (const std::uint64_t length : {1U, 3U}) {
      for (const std::uint64_t records : {0U, 1U, 80U, 90U}) {
        addPlainCases({format, length, records}, cases);
      }
    }
  }
  addScaledCases<float>(cases);
  addScaledCases<double>(cases);
  return cases;
}

class StandardLibrary : public testing::Test {
 protected:
  void givenFile(const std::string& name, const Bytes& bytes) const {
    std::ofstream file(folder.path(name), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  }

  void givenList(const std::vector<Case>& cases) const {
    std::ofstream list(folder.path("list"));
    list.precision(17);
    for (const Case& row : cases) {
      const Scaling scaling = row.options.scaling.empty() ? Scaling{0, 0} : row.options.scaling.front();
      list << row.name << " " << blocks::nameOf(row.shape.format) << " " << row.shape.length << " "
           << row.shape.records << " " << static_cast<int>(row.options.filter) << " "
           << static_cast<int>(row.options.codec) << " " << row.options.recordsPerPiece << " "
           << scaling.scale << " " << scaling.offset << "\n";
    }
  }

  int run(const std::string& what) const {
    const std::string command =
        std::string(PYTHON_PROGRAM) + " " + SCRIPT + " " + what + " " + folder.root().string();
    return std::system(command.c_str());
  }

  Bytes bytesOfFile(const std::string& name) const {
    const std::string text = support::contentOf(folder.path(name));
    const auto* first = reinterpret_cast<const std::byte*>(text.data());
    return {first, first + text.size()};
  }

  support::TempDir folder;
};

Bytes decoded(const Bytes& block, const BlockShape& shape) {
  const PieceHeader header = parseHeader(block, block.size(), shape);
  Bytes records(shape.records * recordBytes(shape));
  PieceDecoder decoder;
  const auto stored = [&](std::uint32_t piece) {
    return std::span(block).subspan(header.pieces[piece].position, header.pieces[piece].bytes);
  };
  decoder.decodeRange(header, 0, shape.records, stored, records.data());
  return records;
}

TEST_F(StandardLibrary, ReadsWhatIsEncodedHere) {
  const std::vector<Case> cases = everyCase();
  givenList(cases);
  for (const Case& row : cases) {
    givenFile(row.name + ".block", blocks::encoded(row.records, row.shape, row.options));
  }
  ASSERT_EQ(run("decode"), 0);
  for (const Case& row : cases) {
    EXPECT_TRUE(bytesOfFile(row.name + ".read") == row.records) << row.name;
  }
}

TEST_F(StandardLibrary, WritesWhatIsDecodedHere) {
  std::vector<Case> cases = everyCase();
  std::erase_if(cases, [](const Case& row) { return row.options.codec == Codec::lz4; });
  givenList(cases);
  for (const Case& row : cases) {
    givenFile(row.name + ".records", row.records);
  }
  ASSERT_EQ(run("encode"), 0);
  for (const Case& row : cases) {
    EXPECT_TRUE(decoded(bytesOfFile(row.name + ".block"), row.shape) == row.records) << row.name;
  }
}

} // namespace
