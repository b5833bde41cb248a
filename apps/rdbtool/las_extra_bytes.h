// SPDX-License-Identifier: BSD-3-Clause
// The described extra bytes of LAS 1.4 point records, as attributes named las.<name>.
#pragma once

#include "apps/rdbtool/column_batch.h"
#include "apps/rdbtool/las_header.h"

#include <string>
#include <vector>

namespace rdbtool {

/// One described field after the standard part of a point record.
struct ExtraBytesField {
  unsigned position = 0; // from the start of the record
  Attribute spec;
};

/// The fields that become attributes, and those that do not.
struct ExtraBytes {
  std::vector<ExtraBytesField> fields;
  std::vector<std::string> skipped; // one sentence per field that becomes no attribute
};

/// Reads the descriptions in the file's record 4 of LASF_Spec. Fields of one to three values of a plain type
/// whose values share scale and offset become attributes; every other field is named in `skipped`.
///
/// \param header  a checked header
/// \errors        none: fields that cannot be read are skipped
ExtraBytes describedExtraBytes(const LasHeader& header);

} // namespace rdbtool
