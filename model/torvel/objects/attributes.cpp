// SPDX-License-Identifier: BSD-3-Clause
// Stores named chunks in order of creation. An object has a few of them, so a linear search is enough.
#include "model/torvel/objects/attributes.h"

#include <algorithm>

namespace Torvel {

namespace {

auto named(const std::string& name) {
  return [&name](const Attributes::Attribute& attribute) { return attribute.name == name; };
}

} // namespace

Attributes::Attributes() = default;
Attributes::~Attributes() = default;

void Attributes::setAttribute(const std::string& name, const StrongPtr<ChunkBase, ChunkBase>& chunk) {
  const auto found = std::find_if(entries.begin(), entries.end(), named(name));
  if (found != entries.end()) {
    found->chunk = chunk;
  } else {
    entries.push_back({name, chunk});
  }
}

StrongPtr<ChunkBase, ChunkBase> Attributes::getAttribute(const std::string& name) const {
  const auto found = std::find_if(entries.begin(), entries.end(), named(name));
  return found != entries.end() ? found->chunk : StrongPtr<ChunkBase, ChunkBase>();
}

} // namespace Torvel
