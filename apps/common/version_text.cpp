// SPDX-License-Identifier: BSD-3-Clause
// What a program prints for --version.
#include "apps/common/version_text.h"

#include <rdb2nimbra/version.h>

namespace apps {

std::string versionText(const std::string& program) {
  return program + " " RDB2NIMBRA_VERSION;
}

} // namespace apps
