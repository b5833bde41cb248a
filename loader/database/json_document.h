// SPDX-License-Identifier: BSD-3-Clause
// A metadata text as a JSON document, in the one way in which the library reads them.
#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QString>
#include <climits>
#include <cstddef>
#include <string>

namespace Riegl {

/// UTF-8 to Qt and back, by length and not by a closing zero; bytes that aren't UTF-8 become U+FFFD.
///
/// \errors  std::bad_alloc
/// \threads any
inline QString toQtText(const std::string& text) {
  return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}
inline std::string toStdText(const QString& text) {
  return text.toUtf8().toStdString();
}

/// Parses a metadata text. It is taken whole, line ends and zero bytes included; bytes that aren't UTF-8
/// become U+FFFD before the parser sees them. Of a name that occurs twice in one object Qt takes the last value,
/// and loses some memory where the first was an object.
///
/// \param json   UTF-8; one that is too long for Qt's own lengths is refused like any other that is no JSON
/// \param error  may be null; receives what the parser says
/// \returns a document that is neither object nor array where the text is no JSON
/// \errors  std::bad_alloc
/// \threads any
inline QJsonDocument parseJsonDocument(const std::string& json, QJsonParseError* error = nullptr) {
  // On the way to UTF-8 Qt sets three bytes a character aside and counts them in an int; a text that would
  // overflow it is beyond the parser's own limit as well.
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
