// SPDX-License-Identifier: BSD-3-Clause
// Counts the allocations of a thread and lets one of them fail, with tests/support/failing_allocator.cpp
#pragma once

namespace support {

/// Starts counting this thread's allocations. The one after the first `successes` fails; a negative number
/// lets none fail.
void beginAllocations(long successes);

/// Stops counting allocations and failing them.
void endAllocations();

/// Number of allocations of this thread between the two calls.
long allocationsMade();

/// Number of this thread's allocations that are not released yet.
long allocationsAlive();

} // namespace support
