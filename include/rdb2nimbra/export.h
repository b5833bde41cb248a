// SPDX-License-Identifier: BSD-3-Clause
// Marks the functions that the library exports; all other symbols are hidden.
#pragma once

#define RDB2NIMBRA_EXPORT __attribute__((visibility("default")))
