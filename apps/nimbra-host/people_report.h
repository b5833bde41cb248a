// SPDX-License-Identifier: BSD-3-Clause
// The report of a load as aligned text, at most 100 columns wide where names and texts allow it.
#pragma once

#include "apps/nimbra-host/outcome.h"
#include "apps/nimbra-host/output_buffer.h"
#include "apps/nimbra-host/picture.h"

#include <iosfwd>

namespace nimbrahost {

/// Writes the report.
/// \param picture  null if none was requested
/// \return whether the stream has accepted everything
bool writePeopleReport(OutputBuffer& output, const LoadRequest& request, const LoadOutcome& outcome,
                       const ShownValues& shown, const PictureOutcome* picture);

/// Writes one line for each requested thing that failed.
/// \param picture  null if none was requested
void reportFailures(const LoadRequest& request, const LoadOutcome& outcome, const PictureOutcome* picture,
                    std::ostream& err);

} // namespace nimbrahost
