// SPDX-License-Identifier: BSD-3-Clause
// Parses two metadata items: the reflectance table and the exponential decomposition of the system wave.
#pragma once

#include "model/torvel/references/chunk.h"

#include <map>
#include <string>
#include <vector>

namespace Riegl {

/// One channel of the decomposition. The four vectors have one element per term of the sum. They should have
/// equal lengths, which is not checked.
struct ExponentialDecomposition {
  std::vector<double> A;     ///< real parts of the amplitude factors, in units of full scale
  std::vector<double> B;     ///< imaginary parts of the amplitude factors
  std::vector<double> gamma; ///< decay, 1/s
  std::vector<double> omega; ///< angular frequency, Hz
  double delay = 0;          ///< delay calibration, s
  double scale = 0;          ///< amplitude calibration
  double a_lin = 0;          ///< relative linear amplitude range, 0 to 1
};

/// Channels by name, in the order of the names' bytes: "1", "10", "2".
using ExponentialDecompositionMap = std::map<std::string, ExponentialDecomposition>;

/// Reads the array `refltab` of the object `pointcloud`: numbers, or texts with numbers (a text that is not a
/// number gives 0). Elements of other kinds are skipped; for each there is a zero at the end of the table.
///
/// \param table  receives a new chunk with as many elements as the array; unchanged if there is no array
/// \return true; or false, with a line on the console, if the text is not a JSON object, if one of the two
///         members is missing, or if the table is larger than 256000 bytes (it is set all the same)
/// \errors  std::bad_alloc
/// \threads any; writes to the console
bool parse_reflectance_table(const std::string& json,
                             Torvel::StrongPtr<Torvel::Chunk<float>, Torvel::ChunkBase>& table);

/// Reads each member of the object as a channel. A value that is missing or not a number is 0, a missing
/// array is empty; nothing is validated.
///
/// \param channels  an entry is added or overwritten for each member
/// \return true; or false, with a line on std::cerr, if the text is not a JSON object
/// \errors  std::bad_alloc
/// \threads any; writes to std::cerr
bool parse_exponential_decomposition(const std::string& json, ExponentialDecompositionMap& channels);

} // namespace Riegl
