// SPDX-License-Identifier: BSD-3-Clause
// Named chunks that hang on an object.
#pragma once

#include "model/torvel/references/chunk_base.h"

#include <cstddef>
#include <deque>
#include <string>

namespace Torvel {

/// The attributes of an object, in order of creation: a name, and a chunk that the attribute holds strongly.
///
/// \threads none: whoever owns the object sees to it that one thread at a time is here
class TORVEL_API Attributes {
 public:
  /// A name and the chunk that hangs there.
  struct Attribute {
    std::string name;
    StrongPtr<ChunkBase, ChunkBase> chunk;
  };

  Attributes();
  virtual ~Attributes();
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  /// Hangs `chunk` on the object under `name`. A chunk of that name is replaced, its place in the order kept.
  void setAttribute(const std::string& name, const StrongPtr<ChunkBase, ChunkBase>& chunk);

  /// The chunk under `name`, an empty pointer where there is none.
  StrongPtr<ChunkBase, ChunkBase> getAttribute(const std::string& name) const;

  /// Number of attributes, and iteration over them in order of creation.
  std::size_t size() const { return entries.size(); }
  bool empty() const { return entries.empty(); }
  std::deque<Attribute>::const_iterator begin() const { return entries.begin(); }
  std::deque<Attribute>::const_iterator end() const { return entries.end(); }

 private:
  std::deque<Attribute> entries;
};

} // namespace Torvel
