// SPDX-License-Identifier: BSD-3-Clause
// Loads a point cloud onto a grid. docs/architecture.md tells the life of one block.
#pragma once

#include <rdb2nimbra/export.h>

#include "model/nimbra/grid.h"
#include "model/torvel/objects/interface.h"

#include <string>

namespace Riegl {

/// Loads a point-cloud database (`.rdbx`, or `.sodx` with the waveform attributes) onto a grid: every column
/// becomes a field, every block of 5000000 records a fragment that all fields share.
///
/// \param path               of the database, UTF-8; exactly the extension ".sodx" adds the waveform attributes
/// \param grid               receives representations, fields and fragments; it is never cleared, and what a
///                           failed load has put there stays. The caller must not use it meanwhile.
/// \param reserved           read nowhere
/// \param loadAllAttributes  also loads the thirteen columns that are left out otherwise
/// \param progress           read nowhere
/// \returns empty on success, else a message for the user
/// \errors  none is raised for a failure of the client or of memory: it becomes the result
/// \threads runs on the caller's thread and starts none; loads on distinct grids may run side by side
RDB2NIMBRA_EXPORT std::string
rdbx2Z4(const std::string& path, Nimbra::Grid& grid, const int& reserved, const bool& loadAllAttributes,
        const Torvel::StrongPtr<Torvel::LoaderProgress, Torvel::InterfaceBase>& progress);

} // namespace Riegl
