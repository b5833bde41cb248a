// SPDX-License-Identifier: BSD-3-Clause
// Damage anywhere in a file of version 2 gives the right data or an Error, never other data.
//
// `container_version2_damage_test [COUNT] [SEED]` makes COUNT damages, each in a sound file of its own: two thirds of
// them in encoded files, half of them outside the blocks.
#include "container/read/verify.h"
#include "tests/container/database_file.h"
#include "tests/container/read/used_bytes.h"

#include <algorithm>
#include <ostream>
#include <random>

namespace {

using namespace containertest;
using container::BlockEncoding;

unsigned long damageCount = 20000;
unsigned long seed = 20260101;

/// Everything that a program can learn from a file.
struct Content {
  std::vector<std::string> texts;
  std::vector<double> numbers;
  std::vector<unsigned char> values;
  bool operator==(const Content&) const = default;
};

void addDescription(const Database& database, const Attribute& attribute, Content& content) {
  for (const std::string* text :
       {&attribute.name, &attribute.unit, &attribute.title, &attribute.description}) {
    content.texts.push_back(*text);
  }
  content.numbers.insert(content.numbers.end(), {static_cast<double>(attribute.type), 1.0 * attribute.length,
                                                 attribute.scale, attribute.offset});
  for (const auto& block : database.blockExtents(attribute.name)) {
    for (const auto& extent : block) {
      content.numbers.insert(content.numbers.end(), {extent.minimum.value_or(-1), extent.maximum.value_or(-1),
                                                     static_cast<double>(extent.missing)});
    }
  }
}

void addValues(const Database& database, const Attribute& attribute, Content& content) {
  constexpr std::uint64_t atOnce = 450; // blocks have 300
  std::vector<unsigned char> part(atOnce * attribute.recordBytes());
  Cursor cursor(database);
  cursor.bindStored(attribute.name, part.data());
  while (const std::uint64_t count = cursor.next(atOnce)) {
    content.values.insert(content.values.end(), part.begin(),
                          part.begin() + static_cast<std::ptrdiff_t>(count * attribute.recordBytes()));
  }
}

Content contentOf(const std::string& path) {
  const Database database(path, 1);
  Content content;
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    addDescription(database, database.attribute(i), content);
    addValues(database, database.attribute(i), content);
  }
  for (const std::string& name : database.itemNames()) {
    content.texts.insert(content.texts.end(), {name, database.item(name).value_or("none")});
  }
  return content;
}

/// A file with blocks of one encoding and small pages, so that it has a tree of every kind of page.
class Damaged : public testing::TestWithParam<BlockEncoding> {
 protected:
  void SetUp() override {
    writeDatabase();
    execute(path, "PRAGMA page_size = 512; VACUUM");
    sound = bytesOf(path);
    used = usedBytesOf(path);
    expected = contentOf(path);
    ASSERT_EQ(expected.values.size(), records * (24U + 4U + 2U + (hasPictures() ? 1000U : 0U)));
  }
  bool hasPictures() const { return GetParam() != BlockEncoding::raw; }
  /// 700 records in blocks of 300. The pictures take two pieces per block; raw, they would be all of the file.
  void writeDatabase() {
    std::vector<double> points(3 * records);
    std::vector<float> heights(records);
    std::vector<std::uint16_t> noise(records);
    std::vector<unsigned char> pictures(1000 * records);
    std::mt19937_64 source(1);
    for (std::size_t i = 0; i < points.size(); ++i) {
      points[i] = static_cast<double>(1000 + i * 37) * 0.001;
      heights[i / 3] = static_cast<float>(i % 1000) * 0.25F;
      noise[i / 3] = static_cast<std::uint16_t>(source());
      pictures[i * 300] = static_cast<unsigned char>(i);
    }
    Writer writer(path, {300, true, 2, GetParam()});
    writer.addAttribute({"riegl.xyz", ElementType::float64, 3, 1, 0, "m", "Points", "Cartesian coordinates"});
    writer.addAttribute({"height", ElementType::float32, 1, 0.5, 10});
    writer.addAttribute({"noise", ElementType::uint16});
    std::vector<const void*> columns{points.data(), heights.data(), noise.data()};
    if (hasPictures()) {
      writer.addAttribute({"picture", ElementType::uint8, 1000});
      columns.push_back(pictures.data());
    }
    writer.setMetadata("riegl.time_base", std::string(3000, 'x'));
    writer.setMetadata("a", "{}");
    writer.setMetadata("b", "text");
    writer.write(records, columns);
    writer.finish();
  }
  std::size_t below(std::size_t bound) { return random() % bound; }
  /// A byte in use, in the blocks as often as anywhere else.
  std::size_t anyUsedByte() {
    const std::vector<std::size_t>& positions = below(2) == 0 ? used.catalogue : used.blocks;
    return positions[below(positions.size())];
  }
  /// Makes `percent` of the damages of this encoding, one at a time.
  template <class Damage>
  void expectHarmless(unsigned long percent, Damage&& damage) {
    const unsigned long rounds = (damageCount * percent + 299) / 300;
    unsigned long errors = 0;
    for (unsigned long round = 0; round < rounds; ++round) {
      std::vector<char> bytes = sound;
      const std::string what = damage(bytes);
      writeBytes(path, bytes);
      const bool isRefused = contentIsRefused(what);
      errors += isRefused ? 1 : 0;
      EXPECT_TRUE(!isRefused || round % 8 != 0 || verifyFinds()) << what;
    }
    EXPECT_GE(errors * 2, rounds) << "most damages to bytes in use are noticed";
  }
  bool contentIsRefused(const std::string& damage) {
    try {
      EXPECT_EQ(contentOf(path) == expected, true) << damage;
      return false;
    } catch (const Error&) {
      return true;
    }
  }
  bool verifyFinds() {
    try {
      return container::verify(path, [](const auto&, const auto&) {}).findings != 0;
    } catch (const Error&) {
      return true;
    }
  }
  static constexpr std::size_t records = 700;
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  std::vector<char> sound;
  UsedBytes used;
  Content expected;
  std::mt19937_64 random{seed};
};

TEST_P(Damaged, ByOneBit) {
  expectHarmless(40, [this](std::vector<char>& bytes) {
    const std::size_t at = anyUsedByte();
    const std::size_t bit = below(8);
    bytes[at] = static_cast<char>(bytes[at] ^ (1 << bit));
    return "bit " + std::to_string(bit) + " of byte " + std::to_string(at);
  });
}

TEST_P(Damaged, ByRandomBytes) {
  expectHarmless(15, [this](std::vector<char>& bytes) {
    const std::size_t at = anyUsedByte();
    const std::size_t count = std::min(bytes.size() - at, 1 + below(700));
    std::generate_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), count,
                    [this] { return static_cast<char>(random()); });
    return std::to_string(count) + " random bytes from " + std::to_string(at) + " on";
  });
}

TEST_P(Damaged, ByZeros) {
  expectHarmless(15, [this](std::vector<char>& bytes) {
    const std::size_t at = anyUsedByte();
    const std::size_t count = std::min(bytes.size() - at, 1 + below(1500));
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), count, '\0');
    return std::to_string(count) + " zeros from " + std::to_string(at) + " on";
  });
}

TEST_P(Damaged, ByBytesFromElsewhereInTheFile) {
  expectHarmless(15, [this](std::vector<char>& bytes) {
    const std::size_t to = anyUsedByte();
    const std::size_t from = anyUsedByte();
    const std::size_t count = std::min(bytes.size() - std::max(from, to), 1 + below(64));
    std::copy_n(sound.begin() + static_cast<std::ptrdiff_t>(from), count,
                bytes.begin() + static_cast<std::ptrdiff_t>(to));
    return std::to_string(count) + " bytes from " + std::to_string(from) + " to " + std::to_string(to);
  });
}

TEST_P(Damaged, BySwappedPages) {
  expectHarmless(10, [this](std::vector<char>& bytes) {
    const std::size_t one = anyUsedByte() / used.pageBytes;
    const std::size_t other = anyUsedByte() / used.pageBytes;
    const auto pageAt = [&](std::size_t page) {
      return bytes.begin() + static_cast<std::ptrdiff_t>(page * used.pageBytes);
    };
    if (one != other) {
      std::swap_ranges(pageAt(one), pageAt(one + 1), pageAt(other));
    }
    return "pages " + std::to_string(one) + " and " + std::to_string(other);
  });
}

TEST_P(Damaged, ByTruncation) {
  expectHarmless(5, [this](std::vector<char>& bytes) {
    bytes.resize(below(bytes.size()));
    return "cut to " + std::to_string(bytes.size());
  });
}

std::string nameOf(const testing::TestParamInfo<BlockEncoding>& row) {
  return row.param == BlockEncoding::raw ? "raw" : row.param == BlockEncoding::lz4 ? "lz4" : "deflate";
}

INSTANTIATE_TEST_SUITE_P(As, Damaged,
                         testing::Values(BlockEncoding::raw, BlockEncoding::lz4, BlockEncoding::deflate),
                         nameOf);

} // namespace

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  damageCount = count > 1 ? std::stoul(arguments[1]) : damageCount;
  seed = count > 2 ? std::stoul(arguments[2]) : seed;
  return RUN_ALL_TESTS();
}
