// Storage of the process-wide counters.
// Partner: counters.h
#include "platform/torvel/core/counters.h"

namespace Torvel {

std::uint64_t PointerID = 0;
std::atomic<std::uint64_t> Ageable::GlobalTime{0};

} // namespace Torvel
