// SPDX-License-Identifier: BSD-3-Clause
// Asks the system for the processors of a thread.
#include "container/format/processors.h"

#include <algorithm>
#include <thread>

#ifdef __linux__
#include <sched.h>
#endif

namespace container {

unsigned int usableProcessors() {
#ifdef CPU_COUNT
  cpu_set_t usable;
  if (sched_getaffinity(0, sizeof usable, &usable) == 0) {
    return static_cast<unsigned int>(std::max(CPU_COUNT(&usable), 1));
  }
#endif
  return std::max(std::thread::hardware_concurrency(), 1U);
}

} // namespace container
