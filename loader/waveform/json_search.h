// SPDX-License-Identifier: BSD-3-Clause
// Searches the objects of a metadata item for a key, at every level.
#pragma once

#include <rdb2nimbra/client.h>

#include <QJsonObject>
#include <QString>
#include <string>

namespace Riegl {

// All three functions exist for T = double and T = std::string, and raise std::bad_alloc.

/// Searches an object in the sorted order of its keys, and recursively the objects in it and in its arrays.
/// Objects in an array within an array are not searched.
///
/// A hit is a value under `key` that is a text, or, for double, a number or a text; a text that is not a
/// number gives 0. A hit ends the search of its own object only. The search around it continues, and each
/// further hit overwrites `out`, so that the last hit counts.
///
/// \return whether there was a hit; otherwise `out` is unchanged
/// \threads any
template <class T>
bool findJsonValue(const QJsonObject& object, const QString& key, T& out);

/// Searches a document. An empty key with T = std::string returns the whole document in Qt's indented form,
/// with sorted keys and a final line end.
///
/// \param json  UTF-8
/// \param key   UTF-8
/// \return whether there was a hit; otherwise `out` is unchanged
/// \errors  a line on std::cerr, and false, if the text is not a JSON object, or if the key is empty and T =
///          double
/// \threads any; writes to std::cerr
template <class T>
bool parseJsonValue(const std::string& json, const std::string& key, T& out);

/// Searches a metadata item of a database.
///
/// \return empty; or "Error: Key not found" if the item or the key is missing, or the item is not a JSON
///         object
/// \errors  riegl::rdb::Error of the client
/// \threads the thread of the client's objects; writes to std::cerr
template <class T>
std::string getMetadataValue(const riegl::rdb::Pointcloud& pointcloud, const std::string& itemName,
                             const std::string& key, T& out);

} // namespace Riegl
