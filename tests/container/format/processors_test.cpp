// SPDX-License-Identifier: BSD-3-Clause
// The count of processors follows what a thread may use.
#include "container/format/processors.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <thread>

#ifdef __linux__
#include <sched.h>
#endif

namespace {

TEST(Processors, AreAtMostThoseOfTheMachine) {
  EXPECT_GE(container::usableProcessors(), 1U);
  EXPECT_LE(container::usableProcessors(), std::max(std::thread::hardware_concurrency(), 1U));
}

#ifdef CPU_COUNT
TEST(Processors, AreOneForAThreadThatIsBoundToOne) {
  unsigned int found = 0;
  std::thread([&found] {
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<unsigned int>(sched_getcpu()), &one);
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    found = container::usableProcessors();
  }).join();
  EXPECT_EQ(found, 1U);
}
#endif

} // namespace
