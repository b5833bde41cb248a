// SPDX-License-Identifier: BSD-3-Clause
// A program that opens the library with dlopen, and exports its symbols, shares the type objects of the library.
#include "arrays/nimbra/registration.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

TEST(OpeningProgram, SharesTypeObjectsAndFlagsWithTheLibrary) {
  const auto ownType = Nimbra::getNimbraType<double>();
  ASSERT_NE(dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL), nullptr) << dlerror();
  const auto creators = Nimbra::MemBase::registeredCreators();
  ASSERT_EQ(creators.size(), 11U);
  EXPECT_EQ(creators[1].type.get(), ownType.get());
  EXPECT_EQ(Nimbra::NimbraTypeBase::rememberedTypes().size(), 11U);
  EXPECT_TRUE((Nimbra::MemArray<1, double>::registered));
}

} // namespace
