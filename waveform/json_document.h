// A metadata text as a JSON document, in the one way in which this room reads them.
// Partner: json_document.cpp
#pragma once

#include <string>

#include <QJsonDocument>
#include <QString>

struct QJsonParseError;

namespace Riegl {

/// Parses a metadata text. It is taken whole, line ends and zero bytes included; bytes that aren't UTF-8
/// become U+FFFD before the parser sees them. Of a name that occurs twice in one object Qt takes the last value,
/// and loses some memory where the first was an object.
///
/// \param error  may be null; receives what the parser says
/// \returns a document that is neither object nor array where the text is no JSON
/// \errors  std::bad_alloc
QJsonDocument parseJsonDocument(const std::string& json, QJsonParseError* error = nullptr);

/// UTF-8 to Qt and back, by length and not by a closing zero.
QString toQtText(const std::string& text);
std::string toStdText(const QString& text);

} // namespace Riegl
