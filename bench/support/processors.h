// SPDX-License-Identifier: BSD-3-Clause
// Keeps a benchmark on one processor, which is also how a program makes the embedded client read with one thread.
#pragma once

#include <cerrno>
#include <sched.h>
#include <system_error>

namespace bench {

/// Binds this thread, and those that it starts, to the current processor while the object lives.
class OneProcessor {
 public:
  OneProcessor() {
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<unsigned int>(sched_getcpu()), &one);
    if (sched_getaffinity(0, sizeof before, &before) != 0 || sched_setaffinity(0, sizeof one, &one) != 0) {
      throw std::system_error(errno, std::generic_category(), "choosing a processor");
    }
  }
  OneProcessor(const OneProcessor&) = delete;
  OneProcessor& operator=(const OneProcessor&) = delete;
  ~OneProcessor() { sched_setaffinity(0, sizeof before, &before); }

 private:
  cpu_set_t before;
};

} // namespace bench
