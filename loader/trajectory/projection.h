// SPDX-License-Identifier: BSD-3-Clause
// The one place that names the header of the coordinate transformation; everything else knows
// `Proj::transform` only.
#pragma once

#ifdef RDB2NIMBRA_TRANSFORMATION_HEADER
#include RDB2NIMBRA_TRANSFORMATION_HEADER
#else
#include "platform/transformation/transform.h"
#endif
