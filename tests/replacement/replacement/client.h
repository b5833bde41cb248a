// The header that a replaced database client is known by.
#pragma once

#include "tests/scripted/rdb.h"
