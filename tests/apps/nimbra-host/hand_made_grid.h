// SPDX-License-Identifier: BSD-3-Clause
// Grids made by hand, for tests of what the host shows of them.
#pragma once

#include "apps/nimbra-host/outcome.h"
#include "arrays/nimbra/mem_array.h"
#include "tests/support/chunk_with.h"

#include <string>
#include <vector>

namespace hosttest {

using support::chunkWith;

/// The outcome of a load that has not run; tests fill its grid.
class HandMade {
 public:
  HandMade() { outcome.grid = new Nimbra::Grid; }

  Nimbra::Field::Pointer field(const std::string& name, const std::string& representation = "Chart") {
    auto& chart = outcome.grid->makeCartesianRepresentation(3, representation, 0);
    return static_cast<Nimbra::Field::Pointer&>(chart.makeField(chart.makeFieldID(name), nullptr, nullptr));
  }

  template <class T>
  HandMade& column(const std::string& name, const std::vector<T>& elements,
                   const std::string& fragment = "Fragment_0") {
    const Nimbra::Field::Pointer target = field(name);
    const Nimbra::MemBase::Pointer array(
        new Nimbra::MemArray<1, T>(chunkWith(elements), {elements.size()}, nullptr));
    target->setPersistentData(array, target->makeFragmentID(fragment), nullptr, "");
    return *this;
  }

  template <class T>
  HandMade& fieldAttribute(const std::string& name, const std::string& attribute,
                           const std::vector<T>& values) {
    field(name)->attributes().setAttribute(attribute, chunkWith(values));
    return *this;
  }

  template <class T>
  HandMade& gridAttribute(const std::string& attribute, const std::vector<T>& values) {
    outcome.grid->attributes().setAttribute(attribute, chunkWith(values));
    return *this;
  }

  nimbrahost::LoadRequest request{.file = "scan.rdbx"};
  nimbrahost::LoadOutcome outcome;
};

} // namespace hosttest
