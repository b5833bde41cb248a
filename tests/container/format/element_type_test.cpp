// SPDX-License-Identifier: BSD-3-Clause
// The element types: names, sizes and C++ types agree.
#include "container/format/element_traits.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using container::ElementType;

template <class Element>
class ElementTypes : public testing::Test {};

using Elements = testing::Types<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                                std::uint32_t, std::int64_t, std::uint64_t, float, double>;
TYPED_TEST_SUITE(ElementTypes, Elements);

TYPED_TEST(ElementTypes, HaveTheNameAndTheSizeOfTheirCppType) {
  constexpr ElementType type = container::elementTypeOf<TypeParam>;
  const std::string kind = std::is_floating_point_v<TypeParam> ? "float"
                           : std::is_signed_v<TypeParam>       ? "int"
                                                               : "uint";
  EXPECT_EQ(container::name(type), kind + std::to_string(8 * sizeof(TypeParam)));
  EXPECT_EQ(container::byteSize(type), sizeof(TypeParam));
}

TYPED_TEST(ElementTypes, AreFoundByTheirName) {
  constexpr ElementType type = container::elementTypeOf<TypeParam>;
  EXPECT_EQ(container::elementTypeNamed(container::name(type)), type);
}

TYPED_TEST(ElementTypes, AreVisitedWithTheirCppType) {
  const auto matches = [](auto element) {
    return std::is_same_v<typename decltype(element)::type, TypeParam>;
  };
  EXPECT_TRUE(container::visitElement(container::elementTypeOf<TypeParam>, matches));
}

TEST(ElementTypeNames, OfNoTypeAreNothing) {
  for (const char* other : {"", "int", "int24", "Int8", "int8 ", "float16"}) {
    EXPECT_EQ(container::elementTypeNamed(other), std::nullopt) << other;
  }
}

} // namespace
