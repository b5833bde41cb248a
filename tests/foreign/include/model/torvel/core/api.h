// SPDX-License-Identifier: BSD-3-Clause
// The mark of what the model exports.
#pragma once

#define TORVEL_API __attribute__((visibility("default")))
