// SPDX-License-Identifier: BSD-3-Clause
// Allocation k fails, for every k: the exception reaches the caller, and the attributes set before stay.
#include <rdb2nimbra/rdb2nimbra.h>

#include "loader/waveform/parsers.h"
#include "tests/support/failing_allocator.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <vector>

namespace {

using Record = Riegl::AttributesForFWFProcessing;
using Names = std::vector<std::string>;

/// Whether `work` raises std::bad_alloc if its allocation after the first `successes` fails.
template <class Work>
bool raises(long successes, const Work& work) {
  support::beginAllocations(successes);
  try {
    work();
  } catch (const std::bad_alloc&) {
    support::endAllocations();
    return true;
  }
  support::endAllocations();
  return false;
}

/// Number of allocations that `work` makes.
template <class Work>
long allocationsOf(const Work& work) {
  EXPECT_FALSE(raises(-1, work));
  EXPECT_GT(support::allocationsMade(), 1);
  return support::allocationsMade();
}

Record fullRecord() {
  Record record;
  for (auto* const array : {&record.a_real, &record.a_imag, &record.b_real, &record.b_imag}) {
    *array = new Torvel::Chunk<double>(2);
  }
  record.refl_tableC = new Torvel::Chunk<float>(3);
  return record;
}

/// One field and one grid, each in two roles.
struct DataSet {
  Record::GridPointer grid = new Nimbra::Grid;
  Record::FieldPointer field = new Nimbra::Field(nullptr);

  void attach(const Record& record) const { record.addAttributeToZ4File(grid, grid, field, field, 4); }

  /// Names in the order in which they are set: all of the field before the first of the grid.
  Names names() const {
    Names all;
    for (const Torvel::Attributes* const attributes : {&field->attributes(), &grid->attributes()}) {
      for (const auto& attribute : *attributes) {
        all.push_back(attribute.name);
      }
    }
    return all;
  }
};

TEST(ExhaustedMemory, LeavesTheAttributesThatWereSetBefore) {
  const Record record = fullRecord();
  const DataSet whole;
  const long allocations = allocationsOf([&] { whole.attach(record); });
  const Names inOrder = whole.names();
  for (long k = 0; k < allocations; ++k) {
    const DataSet data;
    EXPECT_TRUE(raises(k, [&] { data.attach(record); })) << "at allocation " << k;
    const Names names = data.names();
    EXPECT_TRUE(std::equal(names.begin(), names.end(), inOrder.begin())) << "at allocation " << k;
  }
}

TEST(ExhaustedMemory, PassesThroughTheReflectanceTablesParser) {
  Torvel::StrongPtr<Torvel::Chunk<float>, Torvel::ChunkBase> table;
  const auto parse = [&table] {
    Riegl::parse_reflectance_table(R"({"pointcloud": {"refltab": [1, "2"]}})", table);
  };
  const long allocations = allocationsOf(parse);
  table = nullptr;
  for (long k = 0; k < allocations; ++k) {
    EXPECT_TRUE(raises(k, parse)) << "at allocation " << k;
    EXPECT_FALSE(table) << "at allocation " << k;
  }
}

TEST(ExhaustedMemory, PassesThroughTheDecompositionsParser) {
  const auto parse = [] {
    Riegl::ExponentialDecompositionMap channels;
    Riegl::parse_exponential_decomposition(R"({"1": {"parameter": {"A": [1], "omega": [2]}}})", channels);
  };
  for (long k = allocationsOf(parse) - 1; k >= 0; --k) {
    EXPECT_TRUE(raises(k, parse)) << "at allocation " << k;
  }
}

} // namespace
