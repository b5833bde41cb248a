// SPDX-License-Identifier: BSD-3-Clause
// A load whose allocation k fails, for every k: its result text, and no leak.
#include "loader/trajectory/lever_arm.h"
#include "tests/loader/trajectory/scripted_load.h"
#include "tests/support/failing_allocator.h"
#include "tests/support/temp_dir.h"

#include <filesystem>
#include <fstream>
#include <new>

namespace {

using namespace flight;

class ExhaustedMemory : public ScriptedLoad {
 protected:
  ExhaustedMemory() {
    script.blocks = {3};
    script.calls.reserve(1000);
    callback = nullptr;
  }

  /// Loads onto a fresh grid whose allocation after the first `successes` fails.
  std::string loadWith(long successes) {
    Nimbra::Grid fresh;
    script.calls.clear();
    support::beginAllocations(successes);
    std::string result = Riegl::pofx2nimbra(path, fresh, 32633, callback, leverArm, nullptr);
    support::endAllocations();
    return result;
  }

  /// The first load makes the allocations that happen once per process.
  long allocationsOfALoad() {
    EXPECT_EQ(loadWith(-1), "");
    EXPECT_EQ(loadWith(-1), "");
    return support::allocationsMade();
  }

  /// Allocations that remain after the grid of a load and the record of its calls are gone.
  long aliveAfterLoadWith(long successes) {
    loadWith(successes);
    script.calls.clear();
    return support::allocationsAlive();
  }

  long allocationsOfThePath() const {
    support::beginAllocations(-1);
    const std::filesystem::path file(path);
    support::endAllocations();
    return support::allocationsMade();
  }
};

TEST_F(ExhaustedMemory, InTheReadingOfThePathPassesToTheCaller) {
  for (long k = 0; k < allocationsOfThePath(); ++k) {
    EXPECT_THROW(loadWith(k), std::bad_alloc) << "at allocation " << k;
    support::endAllocations();
    EXPECT_TRUE(script.calls.empty()) << "at allocation " << k;
  }
}

TEST_F(ExhaustedMemory, EndsALoadWithItsTextAtEveryOtherAllocation) {
  const long allocations = allocationsOfALoad();
  ASSERT_GT(allocations, 100);
  for (long k = allocationsOfThePath(); k < allocations; ++k) {
    EXPECT_EQ(loadWith(k), "std::bad_alloc For File /data/flight.pofx") << "at allocation " << k;
    EXPECT_EQ(script.liveObjects, 0) << "at allocation " << k;
  }
}

TEST_F(ExhaustedMemory, LeavesNothingBehind) {
  const long allocations = allocationsOfALoad();
  const long alive = aliveAfterLoadWith(-1);
  for (long k = allocationsOfThePath(); k < allocations; ++k) {
    ASSERT_EQ(aliveAfterLoadWith(k), alive) << "at allocation " << k;
  }
}

/// A lever-arm file with lines too long for the buffer inside a string.
class ExhaustedMemoryInTheLeverArmFile : public ExhaustedMemory {
 protected:
  ExhaustedMemoryInTheLeverArmFile() {
    leverArm = directory.path("lever_arm.txt");
    std::ofstream(leverArm) << "leverarm:" + std::string(200, ' ') + "1:2:3\n"
                            << "misalignment:" + std::string(4000, ' ') + "4:5:6\n";
  }

  std::string readWith(long successes) {
    Nimbra::Grid fresh;
    support::beginAllocations(successes);
    std::string result = Riegl::addLeverArm_Misalignment(fresh, leverArm);
    support::endAllocations();
    return result;
  }

  support::TempDir directory;
};

TEST_F(ExhaustedMemoryInTheLeverArmFile, IsNeverTakenForAWrongFile) {
  ASSERT_EQ(readWith(-1), "");
  const long allocations = support::allocationsMade();
  ASSERT_GT(allocations, 10);
  for (long k = 0; k < allocations; ++k) {
    EXPECT_THROW(readWith(k), std::bad_alloc) << "at allocation " << k;
    support::endAllocations();
  }
}

TEST_F(ExhaustedMemoryInTheLeverArmFile, LeavesTheLoadAsItsOwnException) {
  const long reading = (readWith(-1), support::allocationsMade());
  const long allocations = allocationsOfALoad();
  for (long k = allocations - reading; k < allocations; ++k) {
    EXPECT_THROW(loadWith(k), std::bad_alloc) << "at allocation " << k;
    support::endAllocations();
    EXPECT_EQ(script.liveObjects, 0) << "at allocation " << k;
  }
}

} // namespace
