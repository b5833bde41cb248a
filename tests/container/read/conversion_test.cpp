// SPDX-License-Identifier: BSD-3-Clause
// All conversions from stored to requested types, as tables of values.
#include "tests/container/database_file.h"

#include <cmath>
#include <cstring>
#include <gmock/gmock.h>
#include <limits>
#include <sstream>

namespace {

using namespace containertest;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

template <class Element>
constexpr ElementType typeOf = container::elementTypeOf<Element>;

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
  writeColumn(path, {"value", typeOf<From>, 1, scale, offset}, stored, {16, true});
  const std::vector<To> found = readColumn<To>(path, "value");
  ASSERT_EQ(found.size(), stored.size());
  const bool asIs = scale == 1 && offset == 0;
  for (std::size_t i = 0; i < stored.size(); ++i) {
    const long double value = asIs
                                  ? static_cast<long double>(stored[i])
                                  : static_cast<long double>(static_cast<double>(stored[i]) * scale + offset);
    EXPECT_PRED2(same<To>, found[i], expected<To>(value))
        << "stored " << name(typeOf<From>) << " " << +stored[i] << ", requested " << name(typeOf<To>)
        << ", scale " << scale << ", offset " << offset;
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
  ElementType requested;
  std::string text;
};

// The rule once more, by hand: values that a reader of the table can check without a computer.
const Case cases[] = {
    {0.5, ElementType::uint8, "0"},
    {1.5, ElementType::uint8, "2"},
    {2.5, ElementType::uint8, "2"},
    {-0.5, ElementType::int8, "0"},
    {-1.5, ElementType::int8, "-2"},
    {-2.5, ElementType::int32, "-2"},
    {254.5, ElementType::uint8, "254"},
    {255.5, ElementType::uint8, "255"},
    {300, ElementType::uint8, "255"},
    {-1, ElementType::uint8, "0"},
    {-129, ElementType::int8, "-128"},
    {128, ElementType::int8, "127"},
    {70000, ElementType::uint16, "65535"},
    {-40000, ElementType::int16, "-32768"},
    {1e10, ElementType::uint32, "4294967295"},
    {-1e10, ElementType::int32, "-2147483648"},
    {1e10, ElementType::int32, "2147483647"},
    {1e20, ElementType::uint64, "18446744073709551615"},
    {-1, ElementType::uint64, "0"},
    {1e20, ElementType::int64, "9223372036854775807"},
    {-1e20, ElementType::int64, "-9223372036854775808"},
    {4503599627370495.5, ElementType::int64, "4503599627370496"},
    {2251799813685248.5, ElementType::uint64, "2251799813685248"},
    {2251799813685249.5, ElementType::int64, "2251799813685250"},
    {-2251799813685249.5, ElementType::int64, "-2251799813685250"},
    {nan, ElementType::int32, "0"},
    {nan, ElementType::uint64, "0"},
    {nan, ElementType::int64, "0"},
    {nan, ElementType::uint8, "0"},
    {infinity, ElementType::uint16, "65535"},
    {-infinity, ElementType::int64, "-9223372036854775808"},
    {1e300, ElementType::float32, "inf"},
    {nan, ElementType::float32, "nan"},
};

std::string shownAs(const std::string& path, ElementType type) {
  return container::visitElement(type, [&](auto element) {
    std::ostringstream text;
    text << +readColumn<typename decltype(element)::type>(path, "value")[0];
    return text.str();
  });
}

TEST(Conversion, RoundsHalfToEvenSaturatesAndTakesNotANumberAsZero) {
  const support::TempDir directory;
  const std::string path = directory.path("values.rdbx");
  for (const Case& row : cases) {
    writeColumn(path, {"value", ElementType::float64}, std::vector<double>{row.stored});
    EXPECT_EQ(shownAs(path, row.requested), row.text) << "stored " << row.stored;
  }
}

TEST(Conversion, SixtyFourBitIntegersPassExactly) {
  const support::TempDir directory;
  const std::string path = directory.path("values.rdbx");
  const std::vector<std::int64_t> values = {(std::int64_t{1} << 53) + 1, -(std::int64_t{1} << 62) - 1,
                                            std::numeric_limits<std::int64_t>::max()};
  writeColumn(path, {"value", ElementType::int64}, values);
  EXPECT_EQ(readColumn<std::int64_t>(path, "value"), values);
  EXPECT_THAT(readColumn<std::uint64_t>(path, "value"),
              testing::ElementsAre(9007199254740993U, 0U, 9223372036854775807U));
}

TEST(Conversion, LongColumnsAreConvertedAcrossChunks) {
  const support::TempDir directory;
  const std::string path = directory.path("values.rdbx");
  std::vector<std::int16_t> values(400'001 * 3);
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = static_cast<std::int16_t>(i * 31);
  }
  writeColumn(path, {"value", ElementType::int16, 3, 0.5, 1}, values, {150'000, true});
  const auto found = readColumn<double>(path, "value", 170'000);
  ASSERT_EQ(found.size(), values.size());
  const auto wrong =
      std::mismatch(values.begin(), values.end(), found.begin(),
                    [](std::int16_t stored, double value) { return stored * 0.5 + 1 == value; });
  EXPECT_EQ(wrong.first - values.begin(), static_cast<std::ptrdiff_t>(values.size()));
}

} // namespace
