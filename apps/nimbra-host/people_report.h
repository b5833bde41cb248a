// SPDX-License-Identifier: BSD-3-Clause
// A load as text for people, aligned and at most 100 columns wide where names and texts allow it.
#pragma once

#include "apps/nimbra-host/outcome.h"
#include "apps/nimbra-host/output_buffer.h"
#include "apps/nimbra-host/picture.h"

#include <iosfwd>

namespace nimbrahost {

/// Writes the report.
/// \param picture  null where none was asked for
/// \returns whether the stream has taken all of it
bool writePeopleReport(OutputBuffer& output, const LoadRequest& request, const LoadOutcome& outcome,
                       const ShownValues& shown, const PictureOutcome* picture);

/// Writes one line for each thing that was asked for and not done.
/// \param picture  null where none was asked for
void reportFailures(const LoadRequest& request, const LoadOutcome& outcome, const PictureOutcome* picture,
                    std::ostream& err);

} // namespace nimbrahost
