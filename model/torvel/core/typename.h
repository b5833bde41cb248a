// SPDX-License-Identifier: BSD-3-Clause
// A readable name of a type, for type records and messages.
#pragma once

#include "model/torvel/core/api.h"

#include <string>
#include <typeinfo>

namespace Torvel {

/// The name of `type` as it is written in the source language, or its mangled name where it has none.
TORVEL_API std::string Typename(const std::type_info& type);

} // namespace Torvel
