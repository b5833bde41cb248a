// SPDX-License-Identifier: BSD-3-Clause
// The one file that names the headers of the database client; all other files use `riegl::rdb` only.
// -DRDB2NIMBRA_CLIENT_HEADER selects another client; docs/integration.md lists what it must provide.
#pragma once

#ifdef RDB2NIMBRA_CLIENT_HEADER
#include RDB2NIMBRA_CLIENT_HEADER
#else
#include "platform/client/rdb.h"
#endif
