// SPDX-License-Identifier: BSD-3-Clause
// A limit of the system on this process, for a test that has to run out of something.
#pragma once

#include <algorithm>
#include <sys/resource.h>

namespace support {

using Resource = decltype(RLIMIT_AS);

/// While it lives, the process may have at most `most` of a resource, such as RLIMIT_AS.
class ResourceLimit {
 public:
  ResourceLimit(Resource resource, rlim_t most) : which(resource) {
    getrlimit(which, &before);
    const rlimit lowered{std::min(most, before.rlim_max), before.rlim_max};
    setrlimit(which, &lowered);
  }
  ResourceLimit(const ResourceLimit&) = delete;
  ResourceLimit& operator=(const ResourceLimit&) = delete;
  ~ResourceLimit() { setrlimit(which, &before); }

 private:
  Resource which;
  rlimit before{};
};

} // namespace support
