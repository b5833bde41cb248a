// SPDX-License-Identifier: BSD-3-Clause
// The report of a load as one JSON object; docs/nimbra-host.md describes it.
#pragma once

#include "apps/nimbra-host/outcome.h"
#include "apps/nimbra-host/output_buffer.h"
#include "apps/nimbra-host/picture.h"

namespace nimbrahost {

/// Writes the object and a line end. Values are written as they are read, so memory does not grow with their number.
/// \param picture  null if none was requested
/// \return whether the stream has accepted everything
bool writeJsonReport(OutputBuffer& output, const LoadRequest& request, const LoadOutcome& outcome,
                     const ShownValues& shown, const PictureOutcome* picture);

} // namespace nimbrahost
