// SPDX-License-Identifier: BSD-3-Clause
// The command `damage`: the container's damage, with refusals in terms of the command's options.
#pragma once

#include "container/testing/damage.h"

namespace rdbtool {

/// Makes the changes that are asked for, in place; those made before a failure stay.
///
/// \errors  ToolError: wrong use if nothing is to be damaged, no attribute is named for a block, or the table to drop
///          is none of a database's; unreadable if there is no such file; failed if the place to damage does not exist
void damageDatabase(const container::DamageRequest& request);

} // namespace rdbtool
