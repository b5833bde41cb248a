// SPDX-License-Identifier: BSD-3-Clause
// Parses a metadata text as a JSON document, for all rooms that read metadata.
#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QString>
#include <climits>
#include <cstddef>
#include <string>

namespace Riegl {

/// Converts UTF-8 to Qt's strings and back. Texts may contain NUL bytes; invalid bytes become U+FFFD.
///
/// \errors  std::bad_alloc
/// \threads any
inline QString toQtText(const std::string& text) {
  return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}
inline std::string toStdText(const QString& text) {
  return text.toUtf8().toStdString();
}

/// Parses a metadata text, including its line ends and NUL bytes; invalid bytes become U+FFFD first. Of a key
/// that occurs twice in one object, Qt keeps the last value, and leaks memory if the first was an object or an
/// array.
///
/// \param json   UTF-8; a text too long for Qt's lengths is refused like one that is not JSON
/// \param error  may be null; receives the parser's error
/// \return a document that is neither object nor array if the text is not JSON
/// \errors  std::bad_alloc
/// \threads any
inline QJsonDocument parseJsonDocument(const std::string& json, QJsonParseError* error = nullptr) {
  // The conversion to UTF-8 allocates three bytes per character and counts them in an int. A text that would
  // overflow the int also exceeds the parser's own limit.
  constexpr std::size_t longestTextBytes = INT_MAX / 3 - 64;
  if (json.size() > longestTextBytes) {
    if (error != nullptr) {
      error->offset = 0;
      error->error = QJsonParseError::DocumentTooLarge;
    }
    return {};
  }
  return QJsonDocument::fromJson(toQtText(json).toUtf8(), error);
}

} // namespace Riegl
