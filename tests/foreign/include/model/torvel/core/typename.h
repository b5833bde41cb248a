// SPDX-License-Identifier: BSD-3-Clause
// Readable names of types.
#pragma once

#include "model/torvel/core/api.h"

#include <string>
#include <typeinfo>

namespace Torvel {

TORVEL_API std::string Typename(const std::type_info& type);

} // namespace Torvel
