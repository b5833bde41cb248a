// SPDX-License-Identifier: BSD-3-Clause
// The largest request for memory that this thread made. The operators: largest_allocation.cpp
#pragma once

#include <cstddef>

namespace support {

/// Forgets all requests so far.
void forgetAllocations();

/// Bytes of the largest request of this thread since then.
std::size_t largestAllocation();

} // namespace support
