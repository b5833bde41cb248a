// SPDX-License-Identifier: BSD-3-Clause
// The two array-like metadata items: reflectance table and exponential decomposition of the system wave.
#pragma once

#include "model/torvel/references/chunk.h"

#include <map>
#include <string>
#include <vector>

namespace Riegl {

/// One channel of the decomposition. The four vectors have one entry per term of the sum, and equal lengths
/// in metadata that is in order; nothing checks that.
struct ExponentialDecomposition {
  std::vector<double> A;     ///< real parts of the amplitude factors, in units of full scale
  std::vector<double> B;     ///< imaginary parts of the same
  std::vector<double> gamma; ///< decay, 1/s
  std::vector<double> omega; ///< angular frequency, Hz
  double delay = 0;          ///< delay calibration, s
  double scale = 0;          ///< amplitude calibration
  double a_lin = 0;          ///< relative linear amplitude range, 0 to 1
};

/// Channels by name, in the order of the names' bytes: "1", "10", "2".
using ExponentialDecompositionMap = std::map<std::string, ExponentialDecomposition>;

/// Reads the array `refltab` of the object `pointcloud`: numbers, or texts that hold numbers (an unreadable
/// one gives 0). Elements of other kinds are skipped, and as many zeros stand at the end of the table.
///
/// \param table  receives a new chunk with as many elements as the array; untouched where there is none to
///               read
/// \returns true; or false with a line on the console, where the text is no JSON object, where one of
///          the two members is missing, and where the table, then set and complete, is larger than 256000 bytes
/// \errors  std::bad_alloc passes through
/// \threads any; writes to the console
bool parse_reflectance_table(const std::string& json,
                             Torvel::StrongPtr<Torvel::Chunk<float>, Torvel::ChunkBase>& table);

/// Reads each member of the object as a channel. What is missing or no number reads as 0, a missing array as
/// an empty one; nothing is validated.
///
/// \param channels  an entry is added or overwritten for each member
/// \returns true; or false with a line on std::cerr, where the text is no JSON object
/// \errors  std::bad_alloc passes through
/// \threads any; writes to std::cerr
bool parse_exponential_decomposition(const std::string& json, ExponentialDecompositionMap& channels);

} // namespace Riegl
