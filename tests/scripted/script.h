// SPDX-License-Identifier: BSD-3-Clause
// The script of the scripted client: what a database holds, which call fails, and what was called.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace scripted {

/// Fills `count` records of a bound buffer, the first of them being number `firstRecord` of the database.
using Fill = std::function<void(void* buffer, unsigned int count, std::uint64_t firstRecord)>;

/// Fills a bound column of doubles with one number.
Fill filledWith(double value, unsigned int valuesPerRecord = 1);

/// What the raising call raises.
enum class Raised { clientError, standardException };

/// A column with values, which the client converts to the type that is bound.
struct StoredColumn {
  unsigned type = 0; ///< of the elements, as the client numbers them
  unsigned length = 1;
  std::vector<unsigned char> values{};
};

struct Database {
  std::map<std::string, std::string> metadata{};
  std::map<std::string, Fill> columns{}; ///< by attribute name; an empty function leaves the buffer as it is
  std::map<std::string, StoredColumn> storedColumns{}; ///< further columns
  /// What `next` returns in turn, 0 afterwards. Where less is asked for, the next call goes on in the same block.
  std::vector<unsigned int> blocks{};

  bool has(const std::string& name) const { return columns.count(name) + storedColumns.count(name) != 0; }
};

/// Keeps a database for all threads. As long as none is kept, every path opens the script of its thread; afterwards only
/// the paths of kept databases open.
void keep(const std::string& path, Database database);
/// The database kept for `path`; null for none.
std::shared_ptr<const Database> kept(const std::string& path);
bool anyKept();

/// A database, a failure and a record of calls. One per thread; a test takes a fresh one with `newScript()`.
struct Script : Database {
  int raiseAt = 0;           ///< number of the call that raises, from 1; 0 for none
  bool raiseForEver = false; ///< every call from there on raises
  Raised raised = Raised::clientError;

  std::vector<std::string> calls; ///< every operation with its arguments, destructors as "~Name"
  int raisingCalls = 0;           ///< operations so far that could raise
  int liveObjects = 0;            ///< client objects that are not destroyed yet
  std::function<void(const std::string& object)> atEnd; ///< called when an object is destroyed; may be empty

  /// Records an operation that can fail, and fails it where the script says so.
  void enter(const std::string& call);

  /// The recorded calls whose text begins with `prefix`.
  std::vector<std::string> callsThatBegin(const std::string& prefix) const;
};

Script& script();

/// Replaces this thread's script by an empty one.
Script& newScript();

} // namespace scripted
