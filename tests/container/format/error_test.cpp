// SPDX-License-Identifier: BSD-3-Clause
// The container's exception: its texts, and copies that share them.
#include "container/format/error.h"

#include <gtest/gtest.h>
#include <optional>
#include <type_traits>

namespace {

using container::Error;
using container::ErrorKind;

TEST(ContainerError, KeepsKindAndTexts) {
  const Error error(ErrorKind::damaged, "what", "details");
  EXPECT_EQ(error.kind(), ErrorKind::damaged);
  EXPECT_STREQ(error.what(), "what");
  EXPECT_STREQ(error.details(), "details");
}

TEST(ContainerError, EmptyTextsAreNotNull) {
  const Error error(ErrorKind::wrongUse, "", "");
  EXPECT_STREQ(error.what(), "");
  EXPECT_STREQ(error.details(), "");
}

TEST(ContainerError, CopiesShareTheirTextsAndNeverThrow) {
  std::optional<Error> first(std::in_place, ErrorKind::cannotOpen, "what", "details");
  const Error copy = *first;
  EXPECT_EQ(copy.what(), first->what());
  EXPECT_EQ(copy.details(), first->details());
  first.reset();
  EXPECT_STREQ(copy.details(), "details");
  static_assert(std::is_nothrow_copy_constructible_v<Error> && std::is_nothrow_copy_assignable_v<Error>);
}

TEST(ContainerError, KeepsItsTextsWhenItIsMovedFrom) {
  Error first(ErrorKind::cannotOpen, "what", "details");
  const Error second = std::move(first);
  EXPECT_EQ(first.what(), second.what()); // NOLINT(bugprone-use-after-move)
}

} // namespace
