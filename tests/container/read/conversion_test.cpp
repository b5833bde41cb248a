// SPDX-License-Identifier: BSD-3-Clause
// All conversions from stored to requested types, as tables of values.
#include "tests/platform/client/database_file.h"

#include <cmath>
#include <cstring>
#include <gmock/gmock.h>
#include <limits>
#include <sstream>

namespace {

using namespace rdbtest;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

template <class Element>
struct Kind;
#define KIND(element, name, NAME)                                                                            \
  template <>                                                                                                \
  struct Kind<element> {                                                                                     \
    static constexpr StoredType stored = StoredType::name;                                                   \
    static constexpr DataType requested = DataType::NAME;                                                    \
  }
KIND(std::int8_t, int8, INT8);
KIND(std::uint8_t, uint8, UINT8);
KIND(std::int16_t, int16, INT16);
KIND(std::uint16_t, uint16, UINT16);
KIND(std::int32_t, int32, INT32);
KIND(std::uint32_t, uint32, UINT32);
KIND(std::int64_t, int64, INT64);
KIND(std::uint64_t, uint64, UINT64);
KIND(float, float32, FLOAT32);
KIND(double, float64, FLOAT64);
#undef KIND

/// The rule, written the slow way: in extended precision, value by value.
template <class To>
To expected(long double value) {
  if constexpr (std::is_floating_point_v<To>) {
    return static_cast<To>(value);
  } else {
    if (std::isnan(value)) {
      return 0;
    }
    const long double rounded = std::nearbyint(value);
    if (rounded <= static_cast<long double>(std::numeric_limits<To>::min())) {
      return std::numeric_limits<To>::min();
    }
    if (rounded >= static_cast<long double>(std::numeric_limits<To>::max())) {
      return std::numeric_limits<To>::max();
    }
    return static_cast<To>(rounded);
  }
}

template <class From>
std::vector<From> telltaleValues() {
  using Limits = std::numeric_limits<From>;
  if constexpr (std::is_integral_v<From>) {
    std::vector<From> values = {Limits::min(), Limits::max(), static_cast<From>(Limits::max() - 1)};
    for (int bit = 0; bit < Limits::digits; ++bit) {
      const auto power = static_cast<From>(From{1} << bit);
      values.insert(values.end(), {power, static_cast<From>(power - 1), static_cast<From>(power + 1)});
      values.push_back(static_cast<From>(-power));
    }
    return values;
  } else {
    std::vector<From> values = {static_cast<From>(nan),
                                static_cast<From>(infinity),
                                static_cast<From>(-infinity),
                                Limits::max(),
                                Limits::lowest(),
                                Limits::denorm_min(),
                                From{-0.0F}};
    for (const double base :
         {0.0,          1.0,     2.0,     126.0,   127.0,   128.0,        254.0,        255.0,
          256.0,        32767.0, 32768.0, 65535.0, 65536.0, 2147483647.0, 2147483648.0, 4294967295.0,
          4294967296.0, 0x1p51,  0x1p52,  0x1p53,  0x1p63,  0x1p64,       1e30}) {
      for (const double step : {-1.0, -0.75, -0.5, -0.25, 0.0, 0.25, 0.5, 0.75}) {
        values.insert(values.end(), {static_cast<From>(base + step), static_cast<From>(-base + step)});
      }
    }
    return values;
  }
}

template <class Element>
bool same(Element a, Element b) {
  return a == b || (std::isnan(static_cast<double>(a)) && std::isnan(static_cast<double>(b)));
}

template <class From, class To>
void expectConverted(const support::TempDir& directory, double scale, double offset) {
  const std::string path = directory.path("values.rdbx");
  const std::vector<From> stored = telltaleValues<From>();
  writeColumn(path, {"value", Kind<From>::stored, 1, scale, offset}, stored, {16, true});
  const std::vector<To> found = readColumn<To>(path, "value", Kind<To>::requested, 1000);
  ASSERT_EQ(found.size(), stored.size());
  const bool asIs = scale == 1 && offset == 0;
  for (std::size_t i = 0; i < stored.size(); ++i) {
    const long double value = asIs
                                  ? static_cast<long double>(stored[i])
                                  : static_cast<long double>(static_cast<double>(stored[i]) * scale + offset);
    EXPECT_PRED2(same<To>, found[i], expected<To>(value))
        << "stored " << name(Kind<From>::stored) << " " << +stored[i] << ", requested "
        << static_cast<int>(Kind<To>::requested) << ", scale " << scale << ", offset " << offset;
  }
}

template <class From>
class StoredAs : public testing::Test {
 protected:
  void expectEveryTarget(double scale, double offset) {
    expectConverted<From, std::int8_t>(directory, scale, offset);
    expectConverted<From, std::uint8_t>(directory, scale, offset);
    expectConverted<From, std::int16_t>(directory, scale, offset);
    expectConverted<From, std::uint16_t>(directory, scale, offset);
    expectConverted<From, std::int32_t>(directory, scale, offset);
    expectConverted<From, std::uint32_t>(directory, scale, offset);
    expectConverted<From, std::int64_t>(directory, scale, offset);
    expectConverted<From, std::uint64_t>(directory, scale, offset);
    expectConverted<From, float>(directory, scale, offset);
    expectConverted<From, double>(directory, scale, offset);
  }
  support::TempDir directory;
};

using Elements = testing::Types<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                                std::uint32_t, std::int64_t, std::uint64_t, float, double>;
TYPED_TEST_SUITE(StoredAs, Elements);

TYPED_TEST(StoredAs, IsReadAsEveryType) {
  this->expectEveryTarget(1, 0);
}

TYPED_TEST(StoredAs, IsScaledForEveryType) {
  this->expectEveryTarget(0.25, -3);
}

TYPED_TEST(StoredAs, IsScaledBackwardsForEveryType) {
  this->expectEveryTarget(-1.5, 0.125);
}

TYPED_TEST(StoredAs, IsShiftedForEveryType) {
  this->expectEveryTarget(1, 0.5);
}

struct Case {
  double stored;
  DataType requested;
  std::string text;
};

// The rule once more, by hand: what a reader of the table can check in the head.
const Case cases[] = {
    {0.5, DataType::UINT8, "0"},
    {1.5, DataType::UINT8, "2"},
    {2.5, DataType::UINT8, "2"},
    {-0.5, DataType::INT8, "0"},
    {-1.5, DataType::INT8, "-2"},
    {-2.5, DataType::INT32, "-2"},
    {254.5, DataType::UINT8, "254"},
    {255.5, DataType::UINT8, "255"},
    {300, DataType::UINT8, "255"},
    {-1, DataType::UINT8, "0"},
    {-129, DataType::INT8, "-128"},
    {128, DataType::INT8, "127"},
    {70000, DataType::UINT16, "65535"},
    {-40000, DataType::INT16, "-32768"},
    {1e10, DataType::UINT32, "4294967295"},
    {-1e10, DataType::INT32, "-2147483648"},
    {1e10, DataType::INT32, "2147483647"},
    {1e20, DataType::UINT64, "18446744073709551615"},
    {-1, DataType::UINT64, "0"},
    {1e20, DataType::INT64, "9223372036854775807"},
    {-1e20, DataType::INT64, "-9223372036854775808"},
    {4503599627370495.5, DataType::INT64, "4503599627370496"},
    {2251799813685248.5, DataType::UINT64, "2251799813685248"},
    {2251799813685249.5, DataType::INT64, "2251799813685250"},
    {-2251799813685249.5, DataType::INT64, "-2251799813685250"},
    {nan, DataType::INT32, "0"},
    {nan, DataType::UINT64, "0"},
    {nan, DataType::INT64, "0"},
    {nan, DataType::UINT8, "0"},
    {infinity, DataType::UINT16, "65535"},
    {-infinity, DataType::INT64, "-9223372036854775808"},
    {1e300, DataType::FLOAT32, "inf"},
    {nan, DataType::FLOAT32, "nan"},
};

template <class Element>
std::string shownAs(const std::string& path, DataType type) {
  std::ostringstream text;
  text << +readColumn<Element>(path, "value", type)[0];
  return text.str();
}

std::string shownAs(const std::string& path, DataType type) {
  switch (type) {
  case DataType::INT8:
    return shownAs<std::int8_t>(path, type);
  case DataType::UINT8:
    return shownAs<std::uint8_t>(path, type);
  case DataType::INT16:
    return shownAs<std::int16_t>(path, type);
  case DataType::UINT16:
    return shownAs<std::uint16_t>(path, type);
  case DataType::INT32:
    return shownAs<std::int32_t>(path, type);
  case DataType::UINT32:
    return shownAs<std::uint32_t>(path, type);
  case DataType::INT64:
    return shownAs<std::int64_t>(path, type);
  case DataType::UINT64:
    return shownAs<std::uint64_t>(path, type);
  case DataType::FLOAT32:
    return shownAs<float>(path, type);
  default:
    return shownAs<double>(path, type);
  }
}

TEST(Conversion, RoundsHalfToEvenSaturatesAndTakesNotANumberAsZero) {
  const support::TempDir directory;
  const std::string path = directory.path("values.rdbx");
  for (const Case& row : cases) {
    writeColumn(path, {"value", StoredType::float64}, std::vector<double>{row.stored});
    EXPECT_EQ(shownAs(path, row.requested), row.text) << "stored " << row.stored;
  }
}

TEST(Conversion, SixtyFourBitIntegersPassExactly) {
  const support::TempDir directory;
  const std::string path = directory.path("values.rdbx");
  const std::vector<std::int64_t> values = {(std::int64_t{1} << 53) + 1, -(std::int64_t{1} << 62) - 1,
                                            std::numeric_limits<std::int64_t>::max()};
  writeColumn(path, {"value", StoredType::int64}, values);
  EXPECT_EQ(readColumn<std::int64_t>(path, "value", DataType::INT64), values);
  EXPECT_THAT(readColumn<std::uint64_t>(path, "value", DataType::UINT64),
              testing::ElementsAre(9007199254740993U, 0U, 9223372036854775807U));
}

TEST(Conversion, LongColumnsAreConvertedAcrossChunks) {
  const support::TempDir directory;
  const std::string path = directory.path("values.rdbx");
  std::vector<std::int16_t> values(400'001 * 3);
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = static_cast<std::int16_t>(i * 31);
  }
  writeColumn(path, {"value", StoredType::int16, 3, 0.5, 1}, values, {150'000, true});
  const auto found = readColumn<double>(path, "value", DataType::FLOAT64, 170'000);
  ASSERT_EQ(found.size(), values.size());
  const auto wrong =
      std::mismatch(values.begin(), values.end(), found.begin(),
                    [](std::int16_t stored, double value) { return stored * 0.5 + 1 == value; });
  EXPECT_EQ(wrong.first - values.begin(), static_cast<std::ptrdiff_t>(values.size()));
}

} // namespace
