// SPDX-License-Identifier: BSD-3-Clause
// The pre-destruction hook across shared objects: the empty one is recognised and skipped, another one is called.
#include "tests/model/torvel/references/hook_module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

using Strong = Torvel::StrongPtr<Torvel::InterfaceBase, Torvel::InterfaceBase>;
using StrongChunk = Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>;

class Plain : public Torvel::Interface<Plain> {};

class Hooked : public Torvel::Interface<Hooked> {
 public:
  explicit Hooked(int& counter) : calls(counter) {}
  void preDestruction() override { ++calls; }

 private:
  int& calls;
};

/// The module, which stays loaded.
const hooks::Module& loadedModule() {
  static const auto* const table = [] {
    void* const handle = dlopen(HOOK_MODULE, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
      throw std::runtime_error(dlerror());
    }
    return static_cast<const hooks::Module*>(dlsym(handle, "hookModule"));
  }();
  return *table;
}

class HookAcrossModules : public testing::Test {
 protected:
  const hooks::Module& module = loadedModule();
  int calls = 0;
};

TEST_F(HookAcrossModules, EmptyHookOfTheModulesObjectIsSkipped) {
  const Strong object(module.makePlain());
  EXPECT_FALSE(object->hasPreDestruction());
  EXPECT_FALSE(module.seesHook(*object));
}

TEST_F(HookAcrossModules, EmptyHookOfTheProgramsObjectIsSkipped) {
  const Strong object(new Plain);
  EXPECT_FALSE(object->hasPreDestruction());
  EXPECT_FALSE(module.seesHook(*object));
}

TEST_F(HookAcrossModules, EmptyHookOfAChunkThatOnlyTheModuleHasIsSkipped) {
  const StrongChunk chunk(module.makeChunk());
  EXPECT_FALSE(chunk->hasPreDestruction());
}

TEST_F(HookAcrossModules, HookOfTheModulesObjectIsCalledByTheProgram) {
  Strong object(module.makeHooked(calls));
  EXPECT_TRUE(module.seesHook(*object));
  EXPECT_TRUE(object->hasPreDestruction());
  object = nullptr;
  EXPECT_EQ(calls, 1);
}

TEST_F(HookAcrossModules, HookOfTheProgramsObjectIsCalledByTheModule) {
  Strong object(new Hooked(calls));
  EXPECT_TRUE(module.seesHook(*object));
  module.release(object);
  EXPECT_EQ(calls, 1);
}

} // namespace
