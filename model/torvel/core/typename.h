// SPDX-License-Identifier: BSD-3-Clause
// A readable name of a type, for type records and messages.
#pragma once

#include "model/torvel/core/api.h"

#include <string>
#include <typeinfo>

namespace Torvel {

/// Readable name of a type.
///
/// \return the demangled name, such as "unsigned char", or the mangled one where demangling fails
/// \errors std::bad_alloc
/// \threads safe
TORVEL_API std::string Typename(const std::type_info& type);

} // namespace Torvel
