// SPDX-License-Identifier: BSD-3-Clause
// Visibility of what the container's library offers to other shared objects.
#pragma once

/// Marks classes and functions that programs and other shared objects call, and exceptions that they catch.
#define CONTAINER_API __attribute__((visibility("default")))
