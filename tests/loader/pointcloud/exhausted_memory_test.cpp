// SPDX-License-Identifier: BSD-3-Clause
// A load whose allocation k fails, for every k: its result text, whole columns in their order, and no leak.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/scripted/script.h"
#include "tests/support/failing_allocator.h"
#include "tests/support/grid.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

using support::field;
using Names = std::vector<std::string>;

const Names fieldsInOrder{"Positions", "GPSTime", "Amplitude", "Reflectance", "TargetIndex", "Gain"};

/// Loads one block of six columns whose allocation after the first `successes` fails.
std::string loadWith(long successes, Nimbra::Grid& grid) {
  scripted::Script& script = scripted::newScript();
  for (const char* name : {"riegl.xyz", "riegl.timestamp", "riegl.amplitude", "riegl.reflectance",
                           "riegl.target_index", "riegl.gain"}) {
    script.columns[name] = nullptr;
  }
  script.blocks = {2};
  script.calls.reserve(1000);
  support::beginAllocations(successes);
  std::string result = Riegl::rdbx2Z4("scan.rdbx", grid, 0, false, nullptr);
  support::endAllocations();
  return result;
}

/// The first load makes the allocations that happen once per process.
long allocationsOfALoad() {
  for (int load = 0; load < 2; ++load) {
    Nimbra::Grid grid;
    EXPECT_EQ(loadWith(-1, grid), "");
  }
  return support::allocationsMade();
}

/// The fields that have the block, in order of creation.
Names fieldsWithData(const Nimbra::Grid& grid) {
  Names names = support::fieldNames(grid);
  std::erase_if(names, [&grid](const std::string& name) {
    const Nimbra::Field::Pointer made = field(grid, name);
    return !made || !made->array("Fragment_0");
  });
  return names;
}

TEST(ExhaustedMemory, EndsALoadWithItsTextAtEveryAllocation) {
  const long allocations = allocationsOfALoad();
  ASSERT_GT(allocations, 200);
  for (long k = 0; k < allocations; ++k) {
    Nimbra::Grid grid;
    EXPECT_EQ(loadWith(k, grid), "std::bad_alloc") << "at allocation " << k;
    EXPECT_EQ(scripted::script().liveObjects, 0) << "at allocation " << k;
  }
}

TEST(ExhaustedMemory, InTheMidstOfABlockLeavesItInTheFirstColumnsOnly) {
  const long allocations = allocationsOfALoad();
  std::vector<std::size_t> columns;
  for (long k = 0; k < allocations; ++k) {
    Nimbra::Grid grid;
    loadWith(k, grid);
    const Names names = fieldsWithData(grid);
    ASSERT_TRUE(std::equal(names.begin(), names.end(), fieldsInOrder.begin())) << "at allocation " << k;
    columns.push_back(names.size());
  }
  EXPECT_TRUE(std::is_sorted(columns.begin(), columns.end()));
  for (std::size_t count = 0; count <= fieldsInOrder.size(); ++count) {
    EXPECT_TRUE(std::binary_search(columns.begin(), columns.end(), count)) << count << " columns";
  }
}

/// Allocations that remain after the script and the grid of a load are gone.
long aliveAfterLoadWith(long successes) {
  {
    Nimbra::Grid grid;
    loadWith(successes, grid);
  }
  scripted::newScript();
  return support::allocationsAlive();
}

TEST(ExhaustedMemory, LeavesNothingBehindOnceTheGridIsGone) {
  const long allocations = allocationsOfALoad();
  const long alive = aliveAfterLoadWith(-1);
  for (long k = 0; k < allocations; ++k) {
    ASSERT_EQ(aliveAfterLoadWith(k), alive) << "at allocation " << k;
  }
}

} // namespace
