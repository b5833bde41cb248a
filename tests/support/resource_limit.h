// SPDX-License-Identifier: BSD-3-Clause
// A resource limit on this process, for a test of exhaustion.
#pragma once

#include <algorithm>
#include <sys/resource.h>

namespace support {

using Resource = decltype(RLIMIT_AS);

/// Limits a resource of the process, such as RLIMIT_AS, to `most` while it lives.
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
