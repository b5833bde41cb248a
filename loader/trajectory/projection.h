// SPDX-License-Identifier: BSD-3-Clause
// The one file that names the header of the coordinate transformation; all other files use `Proj::transform`.
#pragma once

#ifdef RDB2NIMBRA_TRANSFORMATION_HEADER
#include RDB2NIMBRA_TRANSFORMATION_HEADER
#else
#include "platform/transformation/transform.h"
#endif
