// A metadata text as a JSON document.
// Partner: json_document.h
#include "waveform/json_document.h"

#include <climits>
#include <cstddef>

#include <QByteArray>
#include <QJsonParseError>

namespace Riegl {
namespace {

// On the way to UTF-8 Qt sets three bytes a character aside and counts them in an int; a text that would
// overflow it is beyond the parser's own limit as well.
constexpr std::size_t longestTextBytes = INT_MAX / 3 - 64;

} // namespace

QJsonDocument parseJsonDocument(const std::string& json, QJsonParseError* error) {
  if (json.size() > longestTextBytes) {
    if (error != nullptr) {
      error->offset = 0;
      error->error = QJsonParseError::DocumentTooLarge;
    }
    return {};
  }
  return QJsonDocument::fromJson(toQtText(json).toUtf8(), error);
}

QString toQtText(const std::string& text) {
  return QString::fromUtf8(text.data(), static_cast<int>(text.size()));
}

std::string toStdText(const QString& text) {
  return text.toUtf8().toStdString();
}

} // namespace Riegl
