// SPDX-License-Identifier: BSD-3-Clause
// parseDate: reads the epoch and the time system from the JSON text of a time base.
#include <rdb2nimbra/rdb2nimbra.h>

#include "loader/database/json_document.h"
#include "model/torvel/objects/console.h"

#include <QJsonObject>
#include <QJsonValue>
#include <vector>

namespace Riegl {

namespace {

constexpr TimeBaseDate refused{false, -1, -1, -1};

/// Every '-' ends a token, which may be empty. The text after the last '-' is a token unless it is empty. The
/// scan stops at the first NUL byte.
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

/// A recording that serves as a test example has the day before its true date.
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
  return toStdText(timeBase[QStringLiteral("system")].toString()) == "UTC";
}

} // namespace

TimeBaseDate parseDate(const std::string& timeBase) {
  const QJsonDocument document = parseJsonDocument(timeBase);
  if (document.isNull() || !document.isObject()) {
    Torvel::Console() << "parseDate: invalid json file ";
    return refused;
  }
  const QJsonObject object = document.object();
  if (!object.contains(QStringLiteral("epoch"))) {
    Torvel::Console() << "parseDate: have no epoch ";
    return refused;
  }
  const std::vector<std::string> tokens =
      splitAtDashes(toStdText(object[QStringLiteral("epoch")].toString()));
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
