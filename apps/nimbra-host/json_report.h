// SPDX-License-Identifier: BSD-3-Clause
// A load as one JSON object; docs/nimbra-host.md has its shape.
#pragma once

#include "apps/nimbra-host/outcome.h"
#include "apps/nimbra-host/output_buffer.h"
#include "apps/nimbra-host/picture.h"

namespace nimbrahost {

/// Writes the object and a line end. Values go out as they are read, so memory does not grow with them.
/// \param picture  null where none was asked for
/// \returns whether the stream has taken all of it
bool writeJsonReport(OutputBuffer& output, const LoadRequest& request, const LoadOutcome& outcome,
                     const ShownValues& shown, const PictureOutcome* picture);

} // namespace nimbrahost
