// SPDX-License-Identifier: BSD-3-Clause
// The databases of one check, and the objects that a load has on its stack.
#pragma once

#include "conformance/client.h"
#include "conformance/contents.h"
#include "conformance/guarded_buffer.h"

#include <string>

namespace conformance {

/// Makes databases through the adapter, each in a folder of its own.
class Databases {
 public:
  /// \param folder  exists and is empty; whoever made it removes it
  explicit Databases(std::string folder) : root(std::move(folder)) {}

  /// The path of a new database.
  std::string make(const Contents& contents) { return make(contents, "database"); }
  /// The same in a folder whose name begins with `name`.
  std::string make(const Contents& contents, const std::string& name);
  /// The path of a new database with the pattern in its columns "riegl.class" (length 1), "riegl.xyz" (3),
  /// "riegl.rgba" (4) and "own.name" (1).
  std::string makePattern(std::uint64_t records);
  /// The path of a new file that no client can take for a database.
  std::string makeFile(const std::string& name, const std::string& content) const;
  /// A folder, or a path at which there is nothing.
  const std::string& folder() const { return root; }
  std::string missingPath() const { return root + "/none.rdbx"; }

 private:
  std::string root;
  int made = 0;
};

/// An open database and a query, made and destroyed in the order of a load.
class Load {
 public:
  explicit Load(const std::string& path) : query(openAndSelect(path)) {}

  template <class T>
  void bind(const std::string& name, GuardedBuffer<T>& buffer) {
    query.bind(name, dataType<T>(), buffer.data(), 0);
  }

  riegl::rdb::Context context{"", ""};
  riegl::rdb::Pointcloud database{riegl::rdb::Context(context)};
  riegl::rdb::pointcloud::OpenSettings settings{};
  riegl::rdb::pointcloud::QuerySelect query;

 private:
  riegl::rdb::pointcloud::QuerySelect openAndSelect(const std::string& path) {
    database.open(path, settings);
    return database.select("");
  }
};

/// Reads a whole database of the pattern in blocks of `block` records and expects `records` of them, the first of
/// which holds the pattern's record `first`.
void expectWholePattern(Load& load, const std::string& column, std::uint64_t records, unsigned block,
                        std::uint64_t first = 0);

} // namespace conformance
