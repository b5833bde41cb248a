// SPDX-License-Identifier: BSD-3-Clause
// Named chunks that are attached to an object.
#pragma once

#include "model/torvel/references/typed_chunk.h"

#include <string>
#include <utility>
#include <vector>

namespace Torvel {

class TORVEL_API Attributes {
 public:
  using Value = StrongPtr<ChunkBase, ChunkBase>;

  void setAttribute(const std::string& name, const Value& chunk);
  const std::vector<std::pair<std::string, Value>>& all() const { return entries_; } // in order of creation

 private:
  std::vector<std::pair<std::string, Value>> entries_;
};

} // namespace Torvel
