// SPDX-License-Identifier: BSD-3-Clause
// The header of the replacement database client.
#pragma once

#include "tests/scripted/rdb.h"
