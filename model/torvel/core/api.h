// SPDX-License-Identifier: BSD-3-Clause
// Visibility of what crosses the border of the shared data-model library.
#pragma once

/// Marks classes and data that several shared objects of a process have in common: they share one set of
/// type records, tables and counters only if the dynamic linker can see them.
#define TORVEL_API __attribute__((visibility("default")))
