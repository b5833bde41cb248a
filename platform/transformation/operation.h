// SPDX-License-Identifier: BSD-3-Clause
// One PROJ operation with a context of its own.
#pragma once

#include "arrays/quillon/physical_space.h"

#include <cstddef>
#include <memory>
#include <proj.h>
#include <string>

namespace Proj {

struct ContextDeleter {
  void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
};

struct OperationDeleter {
  void operator()(PJ* operation) const { proj_destroy(operation); }
};

/// A coordinate operation in the order longitude, latitude and east, north. \threads one at a time
class Operation {
 public:
  /// Looks the operation up; test with `reason`.
  ///
  /// \param dataPath  a value of PROJ_LIB. Data are looked for in its folders, in the folder of this library,
  ///                  and where PROJ itself would look without that variable; the first proj.db is taken
  Operation(const std::string& from, const std::string& to, const std::string& dataPath);
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  /// The same operation for another thread, null where it can't be had. Not while `*this` transforms.
  std::unique_ptr<Operation> clone() const;

  /// Why there is no operation, empty if there is one.
  const std::string& reason() const { return failure; }
  bool serves(const std::string& from, const std::string& to, const std::string& dataPath) const;

  /// PROJ's array call on `count` points.
  void apply(Quillon::PhysicalSpace::point* points, std::size_t count) const;

 private:
  explicit Operation(const Operation* original);
  void openContext();
  void look();
  std::string explain(const std::string& logged) const;

  std::string source, target, data, failure;
  std::unique_ptr<PJ_CONTEXT, ContextDeleter> context;
  std::unique_ptr<PJ, OperationDeleter> steps; // after the context: goes first
};

} // namespace Proj
