// SPDX-License-Identifier: BSD-3-Clause
// Reads the lever-arm and misalignment file and attaches its two vectors to the grid.
#pragma once

#include "model/nimbra/grid.h"

#include <string>

namespace Riegl {

/// Reads lines of the form "leverarm:0.1:0.2:0.3" and "misalignment:0.0:0.0:1.5", at least one of each, in
/// any order; the last line of a key counts. The numbers become the grid's attributes "LeverArm" and
/// "Misalignment", (3) double each, as written, without a unit; no column is corrected with them. The decimal
/// mark is the point in every locale.
///
/// \param grid  receives both attributes, or none if the result is not empty
/// \param path  the file; an empty path is success
/// \return empty on success, else a message for the user
/// \errors  std::invalid_argument "stod" for a token that is not a number, std::out_of_range "stod" for one
///          that does not fit a double; std::bad_alloc. The grid's attributes then stay as they were, unless
///          memory runs out between the two.
/// \threads the thread of the load
std::string addLeverArm_Misalignment(Nimbra::Grid& grid, const std::string& path);

} // namespace Riegl
