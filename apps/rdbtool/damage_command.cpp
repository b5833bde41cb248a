// SPDX-License-Identifier: BSD-3-Clause
// The command `damage`: the container's damage, with refusals in terms of the command's options.
#include "apps/rdbtool/damage_command.h"

#include "apps/rdbtool/input_file.h"
#include "apps/rdbtool/tool_error.h"
#include "container/format/error.h"

namespace rdbtool {

void damageDatabase(const container::DamageRequest& request) {
  if (!request.changesBlock() && !request.changesTables() && !request.changesFile()) {
    throw wrongUse("damage: expected at least one option that says what to damage, found none");
  }
  if (request.attribute.empty() && request.needsAttribute()) {
    throw wrongUse("damage: expected --attribute beside an option for one block or type, found none");
  }
  requireReadableFile(request.file);
  if (request.dropsUnknownTable()) {
    throw wrongUse("--drop-table: expected database, attribute, block or metadata, found \"" +
                   *request.dropTable + "\"");
  }
  try {
    container::damage(request);
  } catch (const container::Error& error) {
    throw failed(error.details());
  }
}

} // namespace rdbtool
