// SPDX-License-Identifier: BSD-3-Clause
// Visibility of what the embedded database client offers to other shared objects.
#pragma once

/// Marks classes and functions that programs and other shared objects call, and exceptions that they catch.
#define RDB_API __attribute__((visibility("default")))
