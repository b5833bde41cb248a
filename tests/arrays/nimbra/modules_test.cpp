// SPDX-License-Identifier: BSD-3-Clause
// Modules of one process share the tables: what one module registers, the others find.
#include "model/nimbra/mem_base.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

/// A module that stays loaded, as a host keeps its plugins.
class Module {
 public:
  explicit Module(const char* path) : handle(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
    if (handle == nullptr) {
      throw std::runtime_error(dlerror());
    }
  }

  template <class Function>
  Function* function(const char* name) const {
    return reinterpret_cast<Function*>(dlsym(handle, name));
  }
  std::size_t count(const char* name) const { return function<std::size_t()>(name)(); }
  const void* pointType() const { return function<const void*()>("pointType")(); }

 private:
  void* handle;
};

class Modules : public testing::Test {
 protected:
  static const Module& first() {
    static const Module module(FIRST_MODULE);
    return module;
  }
  static const Module& second() {
    static const Module module(SECOND_MODULE);
    return module;
  }
  static void enter() { first().function<void()>("enterElementTypes")(); }
};

TEST_F(Modules, EntriesOfOneAreSeenByTheOtherAndTheProgram) {
  EXPECT_EQ(Nimbra::MemBase::registeredCreators().size(), 0U);
  enter();
  EXPECT_EQ(second().count("knownAllocators"), 11U);
  EXPECT_EQ(second().count("knownTypes"), 11U);
  EXPECT_EQ(Nimbra::MemBase::registeredCreators().size(), 11U);
}

TEST_F(Modules, TypeObjectIsTheSameInBoth) {
  enter();
  EXPECT_EQ(first().pointType(), second().pointType());
}

TEST_F(Modules, RegistrationByTheOtherEntersNothingMore) {
  enter();
  second().function<void()>("enterElementTypes")();
  EXPECT_EQ(first().count("knownAllocators"), 11U);
  EXPECT_EQ(first().count("knownTypes"), 11U);
}

TEST_F(Modules, ArrayMadeInOneIsUsedInTheOther) {
  enter();
  Nimbra::MemBase::Pointer array;
  second().function<void(std::uint64_t, Nimbra::MemBase::Pointer&)>("makePoints")(5, array);
  ASSERT_TRUE(array);
  EXPECT_EQ(array->elementCount(), 5U);
  EXPECT_TRUE(first().function<bool(const Nimbra::MemBase::Pointer&)>("seesPoints")(array));
  EXPECT_TRUE(second().function<bool(const Nimbra::MemBase::Pointer&)>("seesPoints")(array));
}

} // namespace
