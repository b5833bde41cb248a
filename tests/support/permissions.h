// SPDX-License-Identifier: BSD-3-Clause
// Makes file permissions bind the programs that a test starts, also where the test runs as the superuser.
#pragma once

#include <linux/capability.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace support {

/// From here on programs that this process starts are bound by the permissions of files. A program of the superuser
/// gets no right that is outside its bounding set, so the two that override permissions are dropped from it; this
/// process itself keeps them.
/// \returns false where the system doesn't let them be dropped
inline bool bindStartedProgramsByPermissions() {
  return geteuid() != 0 || (prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0) == 0 &&
                            prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0) == 0);
}

} // namespace support
