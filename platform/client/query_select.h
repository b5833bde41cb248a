// SPDX-License-Identifier: BSD-3-Clause
// A read cursor over all records of a database.
#pragma once

#include "platform/client/api.h"
#include "platform/client/data_type.h"

#include <memory>
#include <string>

namespace riegl::rdb {
namespace embedded {
class Database;
}
class Pointcloud;

namespace pointcloud {

/// Reads columns block by block into buffers of the caller. Copies share one state, the position included;
/// the state keeps the file open, so that a query stays valid after its Pointcloud is gone.
/// \threads one thread at a time for all queries of one Pointcloud; distinct Pointclouds are independent
class RDB_API QuerySelect {
 public:
  QuerySelect();
  QuerySelect(const QuerySelect&) noexcept;
  QuerySelect& operator=(const QuerySelect&) noexcept;
  ~QuerySelect();

  /// From the next `next` on, writes attribute `name` to `buffer` as elements of `dataType`, as many values per record
  /// as the attribute has. A second bind of a name replaces the first.
  ///
  /// \param buffer  stays the caller's; must hold the `count` records of each `next`; any alignment
  /// \param stride  bytes from one record to the next; 0 for tightly packed records
  /// \errors Error for an unknown name or type, a null buffer, a stride below the size of a record, and a well-known
  ///         attribute with more or fewer values per record than its name stands for
  void bind(const std::string& name, DataType dataType, void* buffer, int stride = 0);

  /// Reads up to `count` further records into all bound buffers, each from its start.
  ///
  /// \return how many were read, 0 at the end; counts on if nothing is bound
  /// \errors Error for a damaged or unreadable block; the position stays where it was, and the contents of the
  ///         bound buffers are unspecified
  unsigned int next(unsigned int count);

 private:
  friend class riegl::rdb::Pointcloud;
  explicit QuerySelect(std::shared_ptr<embedded::Database> database);
  struct State;
  std::shared_ptr<State> state;
};

} // namespace pointcloud
} // namespace riegl::rdb
