// SPDX-License-Identifier: BSD-3-Clause
// A shared object with counted objects of its own, for tests/model/torvel/references/hook_test.cpp
#include "tests/model/torvel/references/hook_module.h"

#include "model/torvel/references/chunk.h"

namespace {

class Plain : public Torvel::Interface<Plain> {};

class Hooked : public Torvel::Interface<Hooked> {
 public:
  explicit Hooked(int& counter) : calls(counter) {}
  void preDestruction() override { ++calls; }

 private:
  int& calls;
};

} // namespace

extern "C" __attribute__((visibility("default"))) const hooks::Module hookModule;

const hooks::Module hookModule = {
    .makePlain = []() -> Torvel::InterfaceBase* { return new Plain; },
    .makeHooked = [](int& calls) -> Torvel::InterfaceBase* { return new Hooked(calls); },
    .makeChunk = []() -> Torvel::ChunkBase* { return new Torvel::Chunk<signed char>(1); },
    .seesHook = [](const Torvel::InterfaceBase& object) { return object.hasPreDestruction(); },
    .release = [](Torvel::StrongPtr<Torvel::InterfaceBase, Torvel::InterfaceBase>& last) { last = nullptr; },
};
