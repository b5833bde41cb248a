// SPDX-License-Identifier: BSD-3-Clause
// Reads an environment variable, and puts it back.
#include "apps/nimbra-host/kept_variable.h"

#include <cstdlib>

namespace nimbrahost {

KeptVariable::KeptVariable(const char* variable) : name(variable) {
  if (const char* const present = std::getenv(variable)) {
    value = present;
  }
}

KeptVariable::~KeptVariable() {
  if (value) {
    setenv(name.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name.c_str());
  }
}

} // namespace nimbrahost
