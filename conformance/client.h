// SPDX-License-Identifier: BSD-3-Clause
// The header of the client under test, named by the macro RDB2NIMBRA_CLIENT_HEADER.
#pragma once

#ifndef RDB2NIMBRA_CLIENT_HEADER
#error "define RDB2NIMBRA_CLIENT_HEADER as the header that declares riegl::rdb, for example \"my/client.h\""
#endif
#include RDB2NIMBRA_CLIENT_HEADER
