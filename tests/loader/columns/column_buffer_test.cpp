// SPDX-License-Identifier: BSD-3-Clause
// The column buffer: its content when new, and the order of the effects of publication.
#include "loader/columns/column_buffer.h"

#include "tests/support/grid.h"
#include "tests/support/resident_pages.h"
#include "tests/support/resource_limit.h"

#include <functional>
#include <gtest/gtest.h>
#include <new>

namespace {

using support::field;

/// Makes public the protected operation that the buffers of the imports call.
template <class T>
class Buffer final : public Riegl::Z4Data<T> {
 public:
  using Riegl::Z4Data<T>::Z4Data;
  using Riegl::Z4Data<T>::publishBlock;
};

template <class T>
using BufferPointer = Torvel::StrongPtr<Buffer<T>, Riegl::Z4Data<T>>;

#ifdef RDB2NIMBRA_LAZY_PAGES
constexpr bool dropsPages = true;
#else
constexpr bool dropsPages = false;
#endif

constexpr bool utc = true;
constexpr bool gps = false;

class ColumnBuffer : public testing::Test {
 protected:
  ColumnBuffer() { grid.makeCartesianRepresentation(3, support::scanner, 0); }

  template <class T>
  BufferPointer<T> buffer(const std::string& name, unsigned int capacity, bool toChart = true) {
    return BufferPointer<T>(new Buffer<T>(name, grid, toChart, capacity));
  }
  const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment(const std::string& name) {
    Nimbra::Field::Pointer positions = grid["Positions"];
    return positions->makeFragmentID(name);
  }

  Nimbra::Grid grid;
};

template <class T>
class ScalarColumnBuffer : public ColumnBuffer {};
using Scalars = testing::Types<double, float, int, unsigned int, short, unsigned short, unsigned char,
                               unsigned long long>;
TYPED_TEST_SUITE(ScalarColumnBuffer, Scalars);

TYPED_TEST(ScalarColumnBuffer, IsFullOfZerosWhenNewAlsoOnADirtyHeap) {
  for (int round = 0; round < 3; ++round) {
    const auto fresh = this->template buffer<TypeParam>("Column", 5000000);
    TypeParam* const first = fresh->firstElement();
    ASSERT_EQ(std::count(first, first + 5000000, TypeParam(0)), 5000000) << "round " << round;
    std::fill(first, first + 5000000, TypeParam(77));
  }
}

TEST_F(ColumnBuffer, IsFullFromTheStartAndHasNoSpareRoom) {
  for (const unsigned int capacity : {0U, 3U, 5000000U}) {
    const auto points = buffer<Quillon::PhysicalSpace::point>("Points", capacity);
    EXPECT_EQ(points->blockValues().size(), capacity);
    EXPECT_EQ(points->blockValues().capacity(), capacity);
  }
}

TEST_F(ColumnBuffer, MakesItsFieldInTheDefaultPlaceOrInTheScannersSystem) {
  const auto inChart = buffer<double>("A", 1);
  const auto inScanner = buffer<double>("B", 1, false);
  EXPECT_EQ(support::fieldNames(grid), std::vector<std::string>{"A"});
  EXPECT_EQ(support::fieldNames(grid, support::scanner), std::vector<std::string>{"B"});
}

TEST_F(ColumnBuffer, SharesItsFieldWithAnotherOfItsName) {
  EXPECT_EQ(buffer<double>("A", 1)->receivingField().get(), buffer<float>("A", 1)->receivingField().get());
}

TEST_F(ColumnBuffer, WithoutElementsPublishesNothingAndCallsNoCallback) {
  const auto empty = buffer<double>("GPSTime", 0);
  int calls = 0;
  empty->publishBlock(fragment("Fragment_0"), 3, gps,
                      [&calls](const auto&, const auto&, const auto&) { ++calls; });
  EXPECT_EQ(calls, 0);
  EXPECT_TRUE(field(grid, "GPSTime")->fragments().empty());
  EXPECT_TRUE(field(grid, "GPSTime")->attributes().empty());
}

TEST_F(ColumnBuffer, IsCutThenShownToTheCallbackAheadOfTheGrid) {
  const auto time = buffer<double>("GPSTime", 10);
  time->publishBlock(fragment("Fragment_0"), 3, gps,
                     [this](const auto& chunk, const std::string& name, const bool& isUTC) {
                       EXPECT_EQ(chunk->elementCount(), 3U);
                       EXPECT_EQ(name, "GPSTime");
                       EXPECT_FALSE(isUTC);
                       EXPECT_TRUE(field(grid, "GPSTime")->fragments().empty());
                       EXPECT_TRUE(field(grid, "GPSTime")->attributes().empty());
                     });
}

TEST_F(ColumnBuffer, IsPublishedAsTheCallbackLeavesItAndFlagged) {
  buffer<double>("GPSTime", 10)
      ->publishBlock(fragment("Fragment_0"), 3, gps, [](const auto& chunk, const auto&, const auto&) {
        static_cast<double*>(chunk->data())[1] = 42;
      });
  EXPECT_EQ(support::values<double>(field(grid, "GPSTime"), "Fragment_0"), (std::vector<double>{0, 42, 0}));
  EXPECT_EQ(
      support::attributeValues<unsigned char>(field(grid, "GPSTime")->attributes(), "LeapSecondsAdded?"),
      std::vector<unsigned char>{1});
}

/// A cache that calls a function for each object that it is given.
class NotingCache final : public Torvel::Cache {
 public:
  explicit NotingCache(std::function<void()> onKeep) : note(std::move(onKeep)) {}
  Torvel::StrongPtr<Torvel::Cacheable, Torvel::Cacheable>
  keep(const Torvel::StrongPtr<Torvel::Cacheable, Torvel::Cacheable>& object) override {
    note();
    return object;
  }

 private:
  const std::function<void()> note;
};

TEST_F(ColumnBuffer, GoesThroughTheProcessesCacheBehindTheCallbackAndAheadOfTheFlag) {
  const auto before = Torvel::Cache::MemCache();
  std::vector<std::size_t> attributesWhenKept;
  const auto note = [&] { attributesWhenKept.push_back(field(grid, "GPSTime")->attributes().size()); };
  buffer<double>("GPSTime", 2)
      ->publishBlock(fragment("Fragment_0"), 2, gps, [&note](const auto&, const auto&, const auto&) {
        Torvel::Cache::MemCache() = new NotingCache(note);
      });
  Torvel::Cache::MemCache() = before;
  EXPECT_EQ(attributesWhenKept, std::vector<std::size_t>{0});
}

TEST_F(ColumnBuffer, FlagsAUtcTimeColumnWithZeroAndReplacesTheFlagWithEveryBlock) {
  for (const char* name : {"Fragment_0", "Fragment_1"}) {
    buffer<double>("GPSTime", 2)->publishBlock(fragment(name), 2, utc, nullptr);
  }
  const auto& attributes = field(grid, "GPSTime")->attributes();
  EXPECT_EQ(support::attributeNames(attributes), std::vector<std::string>{"LeapSecondsAdded?"});
  EXPECT_EQ(support::attributeValues<unsigned char>(attributes, "LeapSecondsAdded?").at(0), 0);
}

TEST_F(ColumnBuffer, WritesTheFlagAnewWithEveryBlock) {
  buffer<double>("GPSTime", 2)->publishBlock(fragment("Fragment_0"), 2, utc, nullptr);
  const auto first = field(grid, "GPSTime")->attributes().getAttribute("LeapSecondsAdded?");
  const auto age = field(grid, "GPSTime")->lastChange();
  buffer<double>("GPSTime", 2)->publishBlock(fragment("Fragment_1"), 2, utc, nullptr);
  EXPECT_NE(field(grid, "GPSTime")->attributes().getAttribute("LeapSecondsAdded?").get(), first.get());
  EXPECT_EQ(field(grid, "GPSTime")->lastChange(), age + 1);
}

TEST_F(ColumnBuffer, OfAnyNameIsShownToTheCallback) {
  const auto column = buffer<float>("Amplitude", 2);
  std::vector<std::string> seen;
  column->publishBlock(fragment("Fragment_0"), 2, utc,
                       [&seen](const auto& chunk, const std::string& name, const bool& isUTC) {
                         EXPECT_TRUE(isUTC);
                         static_cast<float*>(chunk->data())[0] = 8;
                         seen.push_back(name);
                       });
  EXPECT_EQ(seen, std::vector<std::string>{"Amplitude"});
  EXPECT_EQ(support::values<float>(field(grid, "Amplitude"), "Fragment_0"), (std::vector<float>{8, 0}));
}

TEST_F(ColumnBuffer, IsAsLongOnTheGridAsTheCallbackLeavesIt) {
  using Values = Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase>;
  const auto column = buffer<double>("Column", 5);
  column->publishBlock(fragment("Fragment_0"), 4, utc, [](const auto& chunk, const auto&, const auto&) {
    Values(chunk)->values().resize(2);
  });
  EXPECT_EQ(field(grid, "Column")->array("Fragment_0")->elementCount(), 2U);
}

TEST_F(ColumnBuffer, OfAnyOtherNameHasNoFlag) {
  for (const char* name : {"ShotTimeStamp", "Timestamp_pof", "GPSTime2"}) {
    buffer<double>(name, 2)->publishBlock(fragment("Fragment_0"), 2, gps, nullptr);
    EXPECT_TRUE(field(grid, name)->attributes().empty()) << name;
    EXPECT_EQ(field(grid, name)->lastChange(), 0U) << name;
  }
}

TEST_F(ColumnBuffer, PublishesItsOwnMemoryAndLeavesTheArrayAsTheOnlyOwner) {
  auto column = buffer<float>("Amplitude", 4);
  const void* const memory = column->firstElement();
  column->publishBlock(fragment("Fragment_0"), 4, utc, nullptr);
  const auto array = field(grid, "Amplitude")->array("Fragment_0");
  EXPECT_EQ(array->rawData(), memory);
  EXPECT_EQ(array->chunkBase().counts()->strong(), 3); // held by buffer, array, and the pointer of this line
  column = nullptr;
  EXPECT_EQ(array->chunkBase().counts()->strong(), 2);
}

TEST_F(ColumnBuffer, GrowsWithDefaultElementsWhereTheBlockIsLonger) {
  const auto column = buffer<float>("Amplitude", 2);
  column->firstElement()[1] = 5;
  column->publishBlock(fragment("Fragment_0"), 4, utc, nullptr);
  EXPECT_EQ(support::values<float>(field(grid, "Amplitude"), "Fragment_0"), (std::vector<float>{0, 5, 0, 0}));
}

TEST_F(ColumnBuffer, CutDownKeepsItsPlaceAndItsValues) {
  const auto column = buffer<double>("Column", 5000000);
  std::fill_n(column->firstElement(), 5000000, 1.25);
  const void* const memory = column->firstElement();
  column->publishBlock(fragment("Fragment_0"), 100001, utc, nullptr);
  const auto kept = support::chunkOf<double>(field(grid, "Column"), "Fragment_0");
  EXPECT_EQ(kept->data(), memory);
  EXPECT_EQ(std::count(kept->values().begin(), kept->values().end(), 1.25), 100001);
}

TEST_F(ColumnBuffer, CutDownKeepsNoMoreThanItsOwnPages) {
  const auto column = buffer<double>("Column", 5000000);
  std::fill_n(column->firstElement(), 5000000, 1.25);
  const void* const memory = column->firstElement();
  column->publishBlock(fragment("Fragment_0"), 100001, utc, nullptr);
  const std::size_t stays = dropsPages ? 100001 * sizeof(double) : 5000000 * sizeof(double);
  EXPECT_NEAR(double(support::residentBytes(memory, 5000000 * sizeof(double))), double(stays), 8192);
}

TEST_F(ColumnBuffer, SetsSingleValuesOfThreeKindsAndANewAge) {
  const auto positions = buffer<Quillon::PhysicalSpace::point>("Positions", 1);
  positions->setAttribute("number", 1.5);
  positions->setAttribute("narrow", 2.5F);
  positions->setAttribute("text", std::string("three"));
  const auto& attributes = field(grid, "Positions")->attributes();
  EXPECT_EQ(support::attributeValues<double>(attributes, "number"), std::vector<double>{1.5});
  EXPECT_EQ(support::attributeValues<float>(attributes, "narrow"), std::vector<float>{2.5F});
  EXPECT_EQ(support::attributeValues<std::string>(attributes, "text"), std::vector<std::string>{"three"});
  EXPECT_EQ(field(grid, "Positions")->lastChange(), Torvel::Ageable::GlobalTime.load());
}

TEST_F(ColumnBuffer, TakesOneStepOfTheClockForEachValueItSets) {
  const auto column = buffer<double>("Column", 1);
  const std::uint64_t before = Torvel::Ageable::GlobalTime;
  for (std::uint64_t step = 1; step <= 3; ++step) {
    column->setAttribute("number", 1.5);
    EXPECT_EQ(field(grid, "Column")->lastChange(), before + step);
  }
}

TEST_F(ColumnBuffer, BeyondAnyMemoryRaisesTheAllocationException) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "sanitizers end the process where an allocation of this size would raise";
#endif
  const support::ResourceLimit limit(RLIMIT_AS,
                                     rlim_t{16} << 30); // so that the machine's memory does not matter
  EXPECT_THROW(buffer<Quillon::PhysicalSpace::point>("Huge", 0xffffffffU), std::bad_alloc);
}

} // namespace
