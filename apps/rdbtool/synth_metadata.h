// SPDX-License-Identifier: BSD-3-Clause
// The metadata items of a synthetic survey.
#pragma once

#include "apps/rdbtool/synth.h"

#include <map>
#include <string>
#include <vector>

namespace rdbtool {

/// Item names to JSON texts, as a database of `kind` carries them.
///
/// \param without  entries "item" or "item:key"; a key goes wherever it stands in the item
/// \errors  ToolError (wrong use) for an entry that leaves nothing out
std::map<std::string, std::string> syntheticMetadata(SynthKind kind, const Survey& survey,
                                                     const std::vector<std::string>& without);

} // namespace rdbtool
