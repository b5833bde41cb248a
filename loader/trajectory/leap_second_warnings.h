// SPDX-License-Identifier: BSD-3-Clause
// The warnings about a trajectory whose time base is not UTC.
#pragma once

namespace Riegl {

/// Writes two warnings to the console: that scans and trajectory need the same time scheme, and that the
/// number of leap seconds may have changed.
void warnOfGpsTimeBase();

} // namespace Riegl
