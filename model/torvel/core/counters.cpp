// SPDX-License-Identifier: BSD-3-Clause
// Defines the process-wide counters.
#include "model/torvel/core/counters.h"

namespace Torvel {

std::uint64_t PointerID = 0;
std::atomic<std::uint64_t> Ageable::GlobalTime{0};

} // namespace Torvel
