// SPDX-License-Identifier: BSD-3-Clause
// Reads the lever-arm and misalignment file and hangs its two vectors on the grid.
#pragma once

#include "model/nimbra/grid.h"

#include <string>

namespace Riegl {

/// Reads lines of the form "leverarm:0.1:0.2:0.3" and "misalignment:0.0:0.0:1.5", one of each at least and
/// in any order; the last of a key stands. The numbers become the grid's attributes "LeverArm" and
/// "Misalignment", (3) double each, as written: no unit is known and nothing is corrected with them. The
/// decimal mark is the point, whatever locale the process has set.
///
/// \param grid  receives both attributes, or none where the result isn't empty
/// \param path  of the file; empty for none, which is success
/// \returns empty on success, else a message for the user
/// \errors  std::invalid_argument "stod" for a token that is no number, std::out_of_range "stod" for one that
///          does not fit a double; std::bad_alloc. The grid's attributes then stay as they were, unless memory
///          runs out between the two.
/// \threads the thread of the load
std::string addLeverArm_Misalignment(Nimbra::Grid& grid, const std::string& path);

} // namespace Riegl
