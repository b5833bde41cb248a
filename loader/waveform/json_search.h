// SPDX-License-Identifier: BSD-3-Clause
// The search for a key through the objects of a metadata item, wherever in the item it lies.
#pragma once

#include <rdb2nimbra/client.h>

#include <QJsonObject>
#include <QString>
#include <string>

namespace Riegl {

// All three exist for T = double and T = std::string, and raise std::bad_alloc where memory runs out.

/// Walks an object in the sorted order of its keys, and the objects within it; objects that are elements of
/// an array are walked too, those in an array within an array are not.
///
/// A hit is a value under `key` that is a text, or for double also a number; a text is read as a number
/// without a check, so that an unreadable one gives 0. A hit ends the walk of its own object only: the walk
/// around it goes on, and each further hit writes over `out`. What stands there in the end is the last hit.
///
/// \returns whether there was a hit; without one `out` is as it was
/// \threads any
template <class T>
bool findJsonValue(const QJsonObject& object, const QString& key, T& out);

/// The search in a document given as UTF-8 text. An empty key with T = std::string gives the whole document
/// in Qt's indented form, with sorted keys and a line end.
///
/// \param json  UTF-8
/// \param key   UTF-8
/// \returns whether there was a hit; without one `out` is as it was
/// \errors  a line on std::cerr, and false, where the text is no JSON object, and where the key is empty with
///          T = double
/// \threads any; writes to std::cerr
template <class T>
bool parseJsonValue(const std::string& json, const std::string& key, T& out);

/// The search in a metadata item of a database.
///
/// \returns the empty text, or "Error: Key not found", be it that the item, the key or a JSON object is missing
/// \errors  riegl::rdb::Error of the client passes through
/// \threads the thread of the client's objects; writes to std::cerr
template <class T>
std::string getMetadataValue(const riegl::rdb::Pointcloud& pointcloud, const std::string& itemName,
                             const std::string& key, T& out);

} // namespace Riegl
