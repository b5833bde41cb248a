// SPDX-License-Identifier: BSD-3-Clause
// The metadata table of an open database. Internal to the container.
#pragma once

#include "container/format/catalogue_text.h"
#include "container/read/connection.h"

#include <optional>
#include <string>
#include <vector>

namespace container {

/// The text of a metadata item, or nothing. \errors Error for an item that holds no text
std::optional<std::string> metadataItem(Connection& connection, const std::string& name);

/// The names of all items, sorted by their bytes. \errors Error for a name that is no text or occurs twice
std::vector<std::string> metadataNames(Connection& connection);

/// Adds all items of a file of version 2 to the text of its catalogue.
/// \errors Error for a name or value that is no text, names out of order, more than mostMetadataBytes
void addMetadata(Connection& connection, TextChecksum& text);

} // namespace container
