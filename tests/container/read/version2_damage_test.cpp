// SPDX-License-Identifier: BSD-3-Clause
// Damage anywhere in a file of version 2 gives the right data or an Error, never other data.
//
// `container_version2_damage_test [COUNT] [SEED]` makes COUNT random damages of each kind instead of the usual number.
#include "tests/container/database_file.h"

#include <algorithm>
#include <cstring>
#include <ostream>
#include <random>

namespace {

using namespace containertest;
using container::BlockEncoding;

unsigned long damageCount = 300;
unsigned long seed = 20260101;

/// Everything that a program can learn from a file.
struct Content {
  std::vector<std::string> attributes;
  std::vector<std::string> items;
  std::vector<double> extents;
  std::vector<unsigned char> values;
  bool operator==(const Content&) const = default;
};

void addAttribute(const Database& database, const Attribute& attribute, Content& content) {
  content.attributes.push_back(attribute.name + "|" + std::string(container::name(attribute.type)) + "|" +
                               std::to_string(attribute.length) + "|" + std::to_string(attribute.scale) +
                               "|" + std::to_string(attribute.offset) + "|" + attribute.unit + "|" +
                               attribute.title + "|" + attribute.description);
  for (const auto& block : database.blockExtents(attribute.name)) {
    for (const auto& extent : block) {
      content.extents.insert(content.extents.end(), {extent.minimum.value_or(-1), extent.maximum.value_or(-1),
                                                     static_cast<double>(extent.missing)});
    }
  }
  const std::size_t before = content.values.size();
  content.values.resize(before + database.recordCount() * attribute.recordBytes());
  Cursor cursor(database);
  unsigned char* to = content.values.data() + before;
  constexpr std::uint64_t atOnce = 1300;
  std::vector<unsigned char> part(atOnce * attribute.recordBytes());
  cursor.bindStored(attribute.name, part.data());
  while (const std::uint64_t count = cursor.next(atOnce)) {
    to = std::copy_n(part.begin(), count * attribute.recordBytes(), to);
  }
}

Content contentOf(const std::string& path) {
  const Database database(path, 1);
  Content content;
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    addAttribute(database, database.attribute(i), content);
  }
  for (const std::string& name : database.itemNames()) {
    content.items.insert(content.items.end(), {name, database.item(name).value_or("none")});
  }
  return content;
}

/// Small pages, so that a small file has a tree of every kind of page, and blocks of all encodings.
class Damaged : public testing::TestWithParam<BlockEncoding> {
 protected:
  void SetUp() override {
    writeDatabase();
    execute(path, "PRAGMA page_size = 512; VACUUM");
    sound = bytesOf(path);
    expected = contentOf(path);
    ASSERT_EQ(expected.items.size(), 6U);
  }
  void writeDatabase() {
    constexpr std::size_t records = 4000;
    std::vector<double> points(3 * records);
    std::vector<float> heights(records);
    std::vector<std::uint16_t> noise(records);
    std::mt19937_64 source(1);
    for (std::size_t i = 0; i < points.size(); ++i) {
      points[i] = static_cast<double>(1000 + i * 37) * 0.001;
      heights[i / 3] = static_cast<float>(i % 1000) * 0.25F;
      noise[i / 3] = static_cast<std::uint16_t>(source());
    }
    Writer writer(path, {512, true, 2, GetParam()});
    writer.addAttribute({"riegl.xyz", ElementType::float64, 3, 1, 0, "m", "Points", "Cartesian coordinates"});
    writer.addAttribute({"height", ElementType::float32, 1, 0.5, 10});
    writer.addAttribute({"noise", ElementType::uint16});
    writer.setMetadata("riegl.time_base", std::string(3000, 'x'));
    writer.setMetadata("a", "{}");
    writer.setMetadata("b", "text");
    writer.write(records, {points.data(), heights.data(), noise.data()});
    writer.finish();
  }
  std::size_t below(std::size_t bound) { return random() % bound; }
  /// Damages the file and expects its content or an error.
  template <class Damage>
  void expectHarmless(Damage&& damage) {
    unsigned long errors = 0;
    for (unsigned long round = 0; round < damageCount; ++round) {
      std::vector<char> bytes = sound;
      const std::string what = damage(bytes);
      writeBytes(path, bytes);
      try {
        EXPECT_EQ(contentOf(path) == expected, true) << what;
      } catch (const Error&) {
        ++errors;
      }
    }
    EXPECT_GT(errors, damageCount / 10);
  }
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  std::vector<char> sound;
  Content expected;
  std::mt19937_64 random{seed};
};

TEST_P(Damaged, ByOneBit) {
  expectHarmless([this](std::vector<char>& bytes) {
    const std::size_t at = below(bytes.size());
    const std::size_t bit = below(8);
    bytes[at] = static_cast<char>(bytes[at] ^ (1 << bit));
    return "bit " + std::to_string(bit) + " of byte " + std::to_string(at);
  });
}

TEST_P(Damaged, ByRandomBytes) {
  expectHarmless([this](std::vector<char>& bytes) {
    const std::size_t at = below(bytes.size());
    const std::size_t count = std::min(bytes.size() - at, 1 + below(700));
    std::generate_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), count,
                    [this] { return static_cast<char>(random()); });
    return std::to_string(count) + " random bytes from " + std::to_string(at) + " on";
  });
}

TEST_P(Damaged, ByZeros) {
  expectHarmless([this](std::vector<char>& bytes) {
    const std::size_t at = below(bytes.size());
    const std::size_t count = std::min(bytes.size() - at, 1 + below(1500));
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), count, '\0');
    return std::to_string(count) + " zeros from " + std::to_string(at) + " on";
  });
}

TEST_P(Damaged, BySwappedPages) {
  expectHarmless([this](std::vector<char>& bytes) {
    constexpr std::size_t pageBytes = 512;
    const std::size_t one = below(bytes.size() / pageBytes);
    const std::size_t other = below(bytes.size() / pageBytes);
    const auto pageAt = [&](std::size_t page) {
      return bytes.begin() + static_cast<std::ptrdiff_t>(page * pageBytes);
    };
    if (one != other) {
      std::swap_ranges(pageAt(one), pageAt(one) + pageBytes, pageAt(other));
    }
    return "pages " + std::to_string(one) + " and " + std::to_string(other);
  });
}

TEST_P(Damaged, ByBytesFromElsewhereInTheFile) {
  expectHarmless([this](std::vector<char>& bytes) {
    const std::size_t count = 1 + below(64);
    const std::size_t from = below(bytes.size() - count);
    const std::size_t to = below(bytes.size() - count);
    std::memmove(bytes.data() + to, bytes.data() + from, count);
    return std::to_string(count) + " bytes from " + std::to_string(from) + " to " + std::to_string(to);
  });
}

TEST_P(Damaged, ByTruncation) {
  expectHarmless([this](std::vector<char>& bytes) {
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
