// SPDX-License-Identifier: BSD-3-Clause
// Binds an attribute of a trajectory to a buffer of doubles.
#pragma once

#include <rdb2nimbra/client.h>

#include "names/names.h"

namespace Riegl {

/// Binds an attribute that has one double per record, in tightly packed records.
///
/// \param query   writes to `buffer` from its next `next` on, until the name is bound again or the query ends
/// \param buffer  stays the caller's; has room for one block
/// \errors  exceptions of the client
inline void bindAttribute(riegl::rdb::pointcloud::QuerySelect& query, const Attribute& attribute,
                          double* buffer) {
  query.bind(attribute.name, riegl::rdb::pointcloud::DataType(dataTypeOf(attribute.element)), buffer, 0);
}

} // namespace Riegl
