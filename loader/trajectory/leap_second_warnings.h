// SPDX-License-Identifier: BSD-3-Clause
// What a load says of a trajectory whose time base isn't UTC.
#pragma once

namespace Riegl {

/// Writes two console entries: that scans and trajectory need one time scheme, and that the number of leap
/// seconds may have changed.
void warnOfGpsTimeBase();

} // namespace Riegl
