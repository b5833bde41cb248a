// SPDX-License-Identifier: BSD-3-Clause
// Quoting of texts for JSON.
#include "apps/nimbra-host/json_value.h"

#include "apps/common/json_text.h"

#include <nlohmann/json.hpp>

namespace nimbrahost {

void appendJsonText(std::string& json, std::string_view text) {
  json += apps::jsonText(text);
}

} // namespace nimbrahost
