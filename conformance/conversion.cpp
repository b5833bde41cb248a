// SPDX-License-Identifier: BSD-3-Clause
// Promises on the conversion from the stored form to the type of the buffer.
#include "conformance/databases.h"
#include "conformance/promise.h"

#include <cmath>
#include <limits>

namespace conformance {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Stores the values and expects them, read as another type.
template <class To, class From>
void expectConverted(Databases& databases, const std::vector<From>& stored, const std::vector<To>& expected) {
  Load load(databases.make({stored.size(), {columnOf("own.value", stored)}, {}}));
  GuardedBuffer<To> buffer(stored.size());
  load.bind("own.value", buffer);
  expectEqual("records read", load.query.next(static_cast<unsigned>(stored.size())), stored.size());
  for (std::size_t i = 0; i < stored.size(); ++i) {
    const bool bothNotANumber = expected[i] != expected[i] && buffer[i] != buffer[i];
    if (buffer[i] != expected[i] && !bothNotANumber) {
      expectEqual(text(stored[i]) + " of type " + text(elementNumber<From>) + ", read as type " +
                      text(elementNumber<To>),
                  buffer[i], expected[i]);
    }
  }
}

template <class T>
constexpr T least = std::numeric_limits<T>::lowest();
template <class T>
constexpr T most = std::numeric_limits<T>::max();

/// The columns that are stored as `T`.
template <class T>
std::string scalarName() {
  return elementNumber<T> == 1 ? "riegl.class" : "own.scalar_" + std::to_string(elementNumber<T>);
}
template <class T>
std::string vectorName() {
  return elementNumber<T> == 1 ? "riegl.xyz" : "own.vector_" + std::to_string(elementNumber<T>);
}

template <class Stored>
void expectEveryRequestedType(const std::string& path) {
  const auto expectAs = [&]<class T>(T) {
    Load load(path);
    GuardedBuffer<T> scalars(300);
    GuardedBuffer<T> vectors(300, 3);
    load.bind(scalarName<Stored>(), scalars);
    load.bind(vectorName<Stored>(), vectors);
    expectEqual("next(300)", load.query.next(300), 300U);
    scalars.expectPattern(0, 300);
    vectors.expectPattern(0, 300);
  };
  expectAs(std::uint8_t{});
  expectAs(std::uint16_t{});
  expectAs(std::int16_t{});
  expectAs(std::uint32_t{});
  expectAs(std::int32_t{});
  expectAs(std::uint64_t{});
  expectAs(float{});
  expectAs(double{});
}

void everyRequestedType(Databases& databases) {
  Contents contents{300, {}, {}};
  const auto store = [&]<class T>(T) {
    contents.columns.push_back(patternColumn<T>(scalarName<T>(), 300));
    contents.columns.push_back(patternColumn<T>(vectorName<T>(), 300, 3));
  };
  store(std::uint8_t{});
  store(std::uint16_t{});
  store(std::int16_t{});
  store(std::uint32_t{});
  store(std::int32_t{});
  store(std::uint64_t{});
  store(float{});
  store(double{});
  const std::string path = databases.make(contents);
  expectEveryRequestedType<std::uint8_t>(path);
  expectEveryRequestedType<std::uint16_t>(path);
  expectEveryRequestedType<std::int16_t>(path);
  expectEveryRequestedType<std::uint32_t>(path);
  expectEveryRequestedType<std::int32_t>(path);
  expectEveryRequestedType<std::uint64_t>(path);
  expectEveryRequestedType<float>(path);
  expectEveryRequestedType<double>(path);
}

template <class To>
void expectSaturated(Databases& databases) {
  expectConverted<To, double>(databases, {-1e300, -1e20, 1e20, 1e300, -infinity, infinity},
                              {least<To>, least<To>, most<To>, most<To>, least<To>, most<To>});
}

void integersSaturate(Databases& databases) {
  expectSaturated<std::uint8_t>(databases);
  expectSaturated<std::uint16_t>(databases);
  expectSaturated<std::int16_t>(databases);
  expectSaturated<std::uint32_t>(databases);
  expectSaturated<std::int32_t>(databases);
  expectSaturated<std::uint64_t>(databases);
  expectConverted<std::uint8_t, double>(databases, {-1, -0.75, 255.25, 255.5, 256}, {0, 0, 255, 255, 255});
  expectConverted<std::uint8_t, std::int16_t>(databases, {-32768, -1, 0, 255, 256, 32767},
                                              {0, 0, 0, 255, 255, 255});
  expectConverted<std::int16_t, std::uint16_t>(databases, {0, 32767, 32768, 65535}, {0, 32767, 32767, 32767});
  expectConverted<std::int16_t, std::int32_t>(databases, {-70000, -32768, 70000}, {-32768, -32768, 32767});
  expectConverted<std::int32_t, std::uint64_t>(databases, {2147483647, 2147483648, most<std::uint64_t>},
                                               {2147483647, 2147483647, 2147483647});
  expectConverted<std::uint64_t, std::int32_t>(databases, {-1, 0, 2147483647}, {0, 0, 2147483647});
}

void fractionsAreRounded(Databases& databases) {
  const std::vector<double> fractions{-2.5, -1.5, -0.5, 0.5, 1.5, 2.5, 3.5, 0.49999999999999994, 2.75, -2.75};
  expectConverted<std::int16_t, double>(databases, fractions, {-2, -2, 0, 0, 2, 2, 4, 0, 3, -3});
  expectConverted<std::int32_t, double>(databases, fractions, {-2, -2, 0, 0, 2, 2, 4, 0, 3, -3});
  expectConverted<std::uint8_t, float>(databases, {0.5F, 1.5F, 2.5F, 254.5F}, {0, 2, 2, 254});
  expectConverted<std::uint16_t, double>(databases, {0.5, 1.5, 65534.5}, {0, 2, 65534});
  expectConverted<std::uint32_t, double>(databases, {0.5, 1.5, 4294967294.5}, {0, 2, 4294967294U});
  expectConverted<std::uint64_t, double>(databases, {0.5, 1.5, 4503599627370495.5},
                                         {0, 2, 4503599627370496U});
}

template <class To>
void expectZero(Databases& databases) {
  expectConverted<To, double>(databases, {1, notANumber, 2}, {1, 0, 2});
  expectConverted<To, float>(databases, {1, std::numeric_limits<float>::quiet_NaN(), 2}, {1, 0, 2});
}

void notANumberIsZero(Databases& databases) {
  expectZero<std::uint8_t>(databases);
  expectZero<std::uint16_t>(databases);
  expectZero<std::int16_t>(databases);
  expectZero<std::uint32_t>(databases);
  expectZero<std::int32_t>(databases);
  expectZero<std::uint64_t>(databases);
}

void largeIntegersPass(Databases& databases) {
  const std::vector<std::uint64_t> large{0,
                                         9007199254740993U,
                                         9223372036854775807U,
                                         9223372036854775809U,
                                         most<std::uint64_t> - 1,
                                         most<std::uint64_t>};
  expectConverted<std::uint64_t>(databases, large, large);
  const std::vector<std::uint32_t> medium{0, 16777217, 2147483649U, most<std::uint32_t>};
  expectConverted<std::uint32_t>(databases, medium, medium);
  expectConverted<double, std::uint32_t>(databases, medium, {0, 16777217, 2147483649.0, 4294967295.0});
}

void floatsAreNearest(Databases& databases) {
  expectConverted<float, double>(databases, {0.1, -1234.56789, 16777217, 16777219, notANumber, infinity},
                                 {0.1F, -1234.56789F, 16777216, 16777220,
                                  std::numeric_limits<float>::quiet_NaN(),
                                  std::numeric_limits<float>::infinity()});
  const std::vector<double> same{0.1, -1e-310, 1e300, -infinity, notANumber, 48.20849};
  expectConverted<double>(databases, same, same);
  expectConverted<float, std::int32_t>(databases, {16777217, -5}, {16777216, -5});
}

} // namespace

std::vector<Promise> conversionPromises() {
  return {
      {"EveryRequestedTypeIsDelivered",
       "Every attribute may be bound as each of the types 1, 3, 4, 5, 6, 7, 9 and 10, however it is stored.",
       "The type is a constant of the column; no load looks at the stored one.", everyRequestedType},
      {"IntegersOutsideTheTypeSaturate",
       "A value outside the range of the bound integer type becomes the nearest value of that type.",
       "No load converts values, so what the client delivers stands on the grid.", integersSaturate},
      {"FractionsAreRoundedHalfToEven",
       "A fraction that is read as an integer is rounded to the nearest one, a half to the even one.",
       "Integer columns of files that store them scaled stand on the grid as the client rounds them.",
       fractionsAreRounded},
      {"NotANumberBecomesZeroInIntegers", "Not-a-number that is read as an integer becomes 0.",
       "Missing values of a file stand on the grid without a further check.", notANumberIsZero},
      {"LargeIntegersPassExactly",
       "Integers that are read as their own type, or as a wider one, pass exactly.",
       "Point identifiers and sample positions have 64 bits.", largeIntegersPass},
      {"FloatsArriveAsTheNearestValue",
       "A value that is read as a float becomes the nearest one; not-a-number and the infinities stay.",
       "Positions and time stamps stand on the grid bit for bit.", floatsAreNearest},
  };
}

} // namespace conformance
