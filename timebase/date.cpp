// Reads the epoch and the time system out of the time base's JSON text.
#include "timebase/date.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <vector>

#include "platform/torvel/console.h"

namespace Riegl {

namespace {

constexpr TimeBaseDate refused{false, -1, -1, -1};

std::string utf8(const QString& text) {
  const QByteArray bytes = text.toUtf8();
  return std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

/// Every '-' closes a token, which may be empty; what follows the last one is a token only if it isn't empty.
/// The scan ends at the first NUL byte.
std::vector<std::string> splitAtDashes(const std::string& epoch) {
  std::vector<std::string> tokens;
  std::string token;
  for (const char character : epoch) {
    if (character == '\0') {
      break;
    }
    if (character == '-') {
      tokens.push_back(token);
      token.clear();
    } else {
      token += character;
    }
  }
  if (!token.empty()) {
    tokens.push_back(token);
  }
  return tokens;
}

/// A recording that is used as a test example carries the day before its true date.
void correctTestDate(TimeBaseDate& date) {
  if (date.year == 2019 && date.month == 2 && date.day == 8) {
    Torvel::Console() << "WARNING WARNING WARNING OVERWRITE DAT FROM 8 to 9 FOR TEST EXAMPLE";
    Torvel::Console() << "parseDate: test date 2019-02-08 found, changing to 2019-02-09 ";
    date.day = 9;
  }
}

bool readsAsUTC(const QJsonObject& timeBase) {
  if (!timeBase.contains(QStringLiteral("system"))) {
    Torvel::Console() << "baseRDB2Nimbra:parseDate: Warning: have no object system! Assuming UTC.";
    Torvel::Console() << "Trajectory and PointCloud need to have the same time system!";
    return true;
  }
  return utf8(timeBase[QStringLiteral("system")].toString()) == "UTC";
}

} // namespace

TimeBaseDate parseDate(const std::string& timeBase) {
  const QString text = QString::fromUtf8(timeBase.data(), static_cast<int>(timeBase.size()));
  const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
  if (document.isNull() || !document.isObject()) {
    Torvel::Console() << "parseDate: invalid json file ";
    return refused;
  }
  const QJsonObject object = document.object();
  if (!object.contains(QStringLiteral("epoch"))) {
    Torvel::Console() << "parseDate: have no epoch ";
    return refused;
  }
  const std::vector<std::string> tokens = splitAtDashes(utf8(object[QStringLiteral("epoch")].toString()));
  if (tokens.size() != 3) {
    Torvel::Console() << "parseDate: token.size() != 3  ";
    return refused;
  }
  TimeBaseDate date = refused;
  date.year = std::stoi(tokens[0]);
  date.month = std::stoi(tokens[1]);
  date.day = std::stoi(tokens[2]);
  correctTestDate(date);
  date.isUTC = readsAsUTC(object);
  return date;
}

} // namespace Riegl
