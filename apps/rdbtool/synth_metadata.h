// SPDX-License-Identifier: BSD-3-Clause
// The metadata items of a synthetic survey.
#pragma once

#include "apps/rdbtool/synth.h"

#include <map>
#include <string>
#include <vector>

namespace rdbtool {

/// The metadata of a database of `kind`: JSON texts by item name.
///
/// \param without  entries "item" or "item:key"; a key is removed from every object of the item
/// \errors  ToolError (wrong use) for an entry that matches nothing
std::map<std::string, std::string> syntheticMetadata(SynthKind kind, const Survey& survey,
                                                     const std::vector<std::string>& without);

} // namespace rdbtool
