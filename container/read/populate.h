// SPDX-License-Identifier: BSD-3-Clause
// Allocates the pages of a buffer that is about to be written, many per system call. Internal to the container.
#pragma once

#include <cstddef>

namespace container {

/// Asks the system to allocate the pages under the next `bytes` bytes, all of which the caller is about to write. A
/// hint only: the content of the memory stays, and without it each page is allocated when it is first written.
void populate(void* to, std::size_t bytes);

} // namespace container
