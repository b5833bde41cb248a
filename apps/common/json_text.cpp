// SPDX-License-Identifier: BSD-3-Clause
// JSON values as the programs print them.
#include "apps/common/json_text.h"

#include "apps/common/printable_text.h"

#include <nlohmann/json.hpp>

namespace apps {

std::string jsonText(const nlohmann::ordered_json& value, int indent) {
  return printableJson(value.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
}

} // namespace apps
