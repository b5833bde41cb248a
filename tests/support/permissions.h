// SPDX-License-Identifier: BSD-3-Clause
// Applies file permissions to the programs that a test starts, also where the test runs as the superuser.
#pragma once

#include <linux/capability.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace support {

/// Drops the two capabilities that override file permissions from the bounding set, so that programs started
/// from here on do not have them. This process itself keeps them.
/// \return false where the system refuses
inline bool bindStartedProgramsByPermissions() {
  return geteuid() != 0 || (prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0) == 0 &&
                            prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0) == 0);
}

} // namespace support
