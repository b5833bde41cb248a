// SPDX-License-Identifier: BSD-3-Clause
// An allocator that counts, and fails once when a test says so. The operators: failing_allocator.cpp
#pragma once

namespace support {

/// Counts this thread's allocations from here on; the one behind the first `successes` fails, none where that
/// is below 0.
void beginAllocations(long successes);

/// From here on nothing fails anymore, and nothing is counted.
void endAllocations();

/// How many allocations this thread made between the two.
long allocationsMade();

/// Allocations of this thread that are not given back yet.
long allocationsAlive();

} // namespace support
