// SPDX-License-Identifier: BSD-3-Clause
// The header that a replaced database client is known by.
#pragma once

#include "tests/scripted/rdb.h"
