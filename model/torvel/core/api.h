// SPDX-License-Identifier: BSD-3-Clause
// Export macro of the data-model library.
#pragma once

/// Exports a class, function or variable. Every type that several shared objects use needs it: the dynamic
/// linker merges their type information, tables and counters only where it can see the symbols.
#define TORVEL_API __attribute__((visibility("default")))
