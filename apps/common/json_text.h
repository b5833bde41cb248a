// SPDX-License-Identifier: BSD-3-Clause
// JSON values as the programs print them.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace apps {

/// A JSON value as text that is safe for terminals (printableJson). Bytes that are not UTF-8 become U+FFFD, so that the
/// result is valid JSON.
///
/// \param indent  blanks per level; everything on one line if negative
/// \errors        std::bad_alloc
/// \threads       safe
std::string jsonText(const nlohmann::ordered_json& value, int indent = -1);

} // namespace apps
