// SPDX-License-Identifier: BSD-3-Clause
// Named chunks that are attached to an object.
#pragma once

#include "model/torvel/references/chunk_base.h"

#include <cstddef>
#include <deque>
#include <string>

namespace Torvel {

/// The attributes of an object, in order of creation. Each holds a strong reference to its chunk.
///
/// \threads not safe: one thread at a time
class TORVEL_API Attributes {
 public:
  /// One attribute.
  struct Attribute {
    std::string name;
    StrongPtr<ChunkBase, ChunkBase> chunk;
  };

  Attributes();
  virtual ~Attributes();
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;

  /// Attaches `chunk` under `name`. An attribute of that name gets the new chunk and keeps its place in the
  /// order.
  /// \errors  std::bad_alloc
  void setAttribute(const std::string& name, const StrongPtr<ChunkBase, ChunkBase>& chunk);

  /// \return the chunk under `name`, an empty pointer where there is none
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
