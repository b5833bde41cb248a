// SPDX-License-Identifier: BSD-3-Clause
// The one place that names the headers of the database client; everything else knows `riegl::rdb` only.
// Another client takes its place with -DRDB2NIMBRA_CLIENT_HEADER; docs/integration.md tells what it has to
// offer.
#pragma once

#ifdef RDB2NIMBRA_CLIENT_HEADER
#include RDB2NIMBRA_CLIENT_HEADER
#else
#include "platform/client/rdb.h"
#endif
