// SPDX-License-Identifier: BSD-3-Clause
// How many processors the calling thread may run on. Internal to the container.
#pragma once

namespace container {

/// The processors that the calling thread may run on, at least 1; those of the machine where the system does not report
/// them.
unsigned int usableProcessors();

} // namespace container
