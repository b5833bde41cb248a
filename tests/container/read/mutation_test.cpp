// SPDX-License-Identifier: BSD-3-Clause
// Files with changed or missing bytes, or with wrong sizes in them, give the right data or an Error.
#include "tests/container/database_file.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {
std::atomic<std::size_t> bytesInUse = 0;
std::atomic<std::size_t> mostBytesInUse = 0;
} // namespace

// Counts what this program and the container allocate; SQLite counts its own part.
void* operator new(std::size_t bytes) {
  void* const memory = std::malloc(bytes);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  const std::size_t now = bytesInUse += malloc_usable_size(memory);
  mostBytesInUse = std::max(mostBytesInUse.load(), now);
  return memory;
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) {
    bytesInUse -= malloc_usable_size(memory);
  }
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace {

using namespace containertest;

struct Loaded {
  std::vector<double> points;
  std::vector<float> classes;
  bool operator==(const Loaded&) const = default;
};

Loaded load(const std::string& path) {
  return {readColumn<double>(path, "riegl.xyz", 700), readColumn<float>(path, "riegl.class", 333)};
}

/// Small pages, so that a small file has a tree of every kind of page: 3000 records, blocks of 256.
class Mutated : public testing::Test {
 protected:
  void SetUp() override {
    Writer writer(path, version1(256));
    writer.addAttribute({"riegl.xyz", ElementType::float64, 3});
    writer.addAttribute({"riegl.class", ElementType::uint8});
    std::vector<double> points(9000);
    std::vector<unsigned char> classes(3000);
    for (std::size_t i = 0; i < points.size(); ++i) {
      points[i] = static_cast<double>(i) * 0.37;
      classes[i % 3000] = static_cast<unsigned char>(i * 11);
    }
    writer.write(3000, {points.data(), classes.data()});
    writer.setMetadata("riegl.time_base", std::string(3000, 'x'));
    writer.finish();
    execute(path, "PRAGMA page_size = 512; VACUUM");
    sound = bytesOf(path);
    expected = load(path);
    findCatalogue();
  }
  void findCatalogue() {
    sqlite3* opened = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &opened), SQLITE_OK);
    const auto keep = [](void* pages, int, char** values, char**) {
      static_cast<std::vector<std::size_t>*>(pages)->push_back(std::stoul(values[0]));
      return 0;
    };
    sqlite3_exec(opened, "SELECT pageno FROM dbstat WHERE name IN ('attribute', 'database')", keep,
                 &cataloguePages, nullptr);
    sqlite3_close(opened);
    ASSERT_EQ(cataloguePages.size(), 2U);
  }
  enum class Outcome { equal, error, other };
  Outcome outcome(const std::vector<char>& bytes) {
    writeBytes(path, bytes);
    try {
      return load(path) == expected ? Outcome::equal : Outcome::other;
    } catch (const Error&) {
      return Outcome::error;
    }
  }
  /// No checksum covers these tables: a reader cannot detect a changed scale.
  bool liesInCatalogue(std::size_t at) const {
    return std::find(cataloguePages.begin(), cataloguePages.end(), at / pageBytes + 1) !=
           cataloguePages.end();
  }
  void expectHarmless(std::size_t at, char value) {
    std::vector<char> bytes = sound;
    bytes[at] = value;
    const Outcome found = outcome(bytes);
    EXPECT_TRUE(found != Outcome::other || liesInCatalogue(at)) << "byte " << at << " as " << +value;
    ++(found == Outcome::error ? errors : survivors);
  }

  static constexpr std::size_t pageBytes = 512;
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  std::vector<char> sound;
  std::vector<std::size_t> cataloguePages;
  Loaded expected;
  int errors = 0;
  int survivors = 0;
};

TEST_F(Mutated, TruncatedFileIsAnError) {
  for (std::size_t length = 0; length < sound.size(); length += sound.size() / 150) {
    const Outcome found = outcome({sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(length)});
    EXPECT_EQ(found, Outcome::error) << "at " << length;
  }
}

TEST_F(Mutated, ChangedByteAnywhereIsAnErrorOrHarmless) {
  std::uint64_t state = 20240229;
  for (int round = 0; round < 800; ++round) {
    state = state * 6364136223846793005U + 1442695040888963407U;
    const std::size_t at = (state >> 33) % sound.size();
    expectHarmless(at, static_cast<char>(sound[at] ^ static_cast<char>(1U << (state >> 61))));
  }
  EXPECT_GT(errors, 600);
}

TEST_F(Mutated, ChangedPageHeadIsAnErrorOrHarmless) {
  for (std::size_t page = 0; page < sound.size(); page += pageBytes) {
    for (const std::size_t at : {0U, 2U, 4U, 6U, 8U, 9U, 11U, 13U}) {
      expectHarmless(page + at, static_cast<char>(0xff));
      expectHarmless(page + at, static_cast<char>(sound[page + at] + 1));
    }
  }
  EXPECT_GT(errors, 100);
}

TEST_F(Mutated, ChangedFileHeadIsAnErrorOrHarmless) {
  for (std::size_t at = 0; at < 2 * pageBytes; ++at) {
    expectHarmless(at, static_cast<char>(sound[at] + 1));
  }
  EXPECT_GT(errors, 50);
}

/// Attributes whose descriptions of 200,000 bytes share pages: the cell of each is changed to point to the pages of the
/// first one.
class SharedText : public Mutated {
 protected:
  void SetUp() override {
    Mutated::SetUp();
    execute(path,
            "UPDATE database SET records = 0; DELETE FROM block; DELETE FROM attribute; VACUUM;"
            "INSERT INTO attribute (name, type, description) VALUES ('shared00', 'int8', hex(zeroblob(" +
                std::to_string(longText / 2) + ")))");
    for (int i = 1; i <= 40; ++i) {
      execute(path, "INSERT INTO attribute (name, type, description) VALUES ('" + nameOf(i) +
                        "', 'int8', hex(zeroblob(" + std::to_string(shortText / 2) + ")))");
    }
    sound = bytesOf(path);
  }
  static std::string nameOf(int i) { return "shared" + std::to_string(i / 10) + std::to_string(i % 10); }
  /// Position of an attribute's name: it follows the cell's size and row id and eleven bytes of types.
  std::size_t nameAt(int i) const {
    const std::string name = nameOf(i) + "int8";
    const auto found = std::search(sound.begin(), sound.end(), name.begin(), name.end());
    return static_cast<std::size_t>(found - sound.begin());
  }
  /// Writes a number as SQLite stores it, in three bytes of seven bits each.
  static void putNumber(std::vector<char>& bytes, std::size_t at, std::size_t number) {
    bytes[at] = static_cast<char>((number >> 14) | 0x80);
    bytes[at + 1] = static_cast<char>(((number >> 7) & 0x7f) | 0x80);
    bytes[at + 2] = static_cast<char>(number & 0x7f);
  }
  std::vector<char> shared() const {
    std::vector<char> bytes = sound;
    for (int i = 1; i <= 40; ++i) {
      putNumber(bytes, nameAt(i) - headBytes - 4, payload(longText));
      putNumber(bytes, nameAt(i) - 3, 2 * longText + 13);
      std::copy_n(sound.begin() + static_cast<std::ptrdiff_t>(pointerAt(0)), 4,
                  bytes.begin() + static_cast<std::ptrdiff_t>(pointerAt(i)));
    }
    return bytes;
  }
  std::size_t pointerAt(int i) const { return nameAt(i) - headBytes + localBytes; }

  static std::size_t payload(std::size_t text) { return headBytes + bodyBytes + text; }
  static constexpr std::size_t longText = 20'000 + 508 * 354; // the same rest in the last page
  static constexpr std::size_t shortText = 20'000;
  static constexpr std::size_t headBytes = 12; // its own size, ten types, the last of three bytes
  static constexpr std::size_t bodyBytes = 12; // the name and the type
  static constexpr std::size_t localBytes = 39 + (headBytes + bodyBytes + shortText - 39) % 508;
};

TEST_F(SharedText, IsReadAsOftenAsTheFileCouldHoldIt) {
  writeBytes(path, shared());
  mostBytesInUse = bytesInUse.load();
  const std::size_t before = bytesInUse;
  EXPECT_EQ(
      errorOf(directory, [this] { Database{path}; }),
      "the catalogue of the database is wrong (table \"attribute\" of scan.rdbx: expected at most as much "
      "text as the file has bytes, " +
          std::to_string(sound.size()) + ", found more)");
  EXPECT_LT(mostBytesInUse - before, 3 * sound.size());
}

TEST_F(Mutated, MemoryOfTheContainerIsCounted) {
  const std::size_t before = bytesInUse;
  const Database database(path);
  EXPECT_GT(bytesInUse - before, 1000U);
}

TEST_F(Mutated, MemoryStaysInProportionWhateverTheFileClaims) {
  sqlite3_memory_highwater(1);
  mostBytesInUse = bytesInUse.load();
  const std::size_t before = bytesInUse;
  for (const char* lie :
       {"UPDATE database SET records = 1000000000000", "UPDATE database SET records = 300000",
        "UPDATE database SET block_rows = 4294967295", "UPDATE database SET block_rows = 1",
        "UPDATE attribute SET length = 65536", "UPDATE block SET checksum = 1000000000000",
        "INSERT INTO block SELECT attribute, number + 1000000000, 0, data FROM block",
        "INSERT INTO attribute (name, type, length) VALUES ('more', 'float64', 65536)"}) {
    writeBytes(path, sound);
    execute(path, lie);
    EXPECT_THROW(load(path), Error) << lie;
  }
  EXPECT_LT(mostBytesInUse - before, 2'000'000U);
  EXPECT_LT(sqlite3_memory_highwater(0), 4'000'000);
}

} // namespace
