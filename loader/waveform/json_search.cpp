// SPDX-License-Identifier: BSD-3-Clause
// Searches the objects of a metadata item for a key.
#include "loader/waveform/json_search.h"

#include "loader/database/json_document.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <iostream>
#include <type_traits>

namespace Riegl {
namespace {

bool takeHit(const QJsonValue& value, double& out) {
  if (value.isDouble()) {
    out = value.toDouble(0.0);
    return true;
  }
  if (value.isString()) {
    out = value.toString().toDouble();
    return true;
  }
  return false;
}

bool takeHit(const QJsonValue& value, std::string& out) {
  if (value.isString()) {
    out = toStdText(value.toString());
    return true;
  }
  return false;
}

template <class T>
bool findInElements(const QJsonArray& array, const QString& key, T& out) {
  bool found = false;
  for (const QJsonValue element : array) {
    if (element.isObject()) {
      found |= findJsonValue<T>(element.toObject(), key, out);
    }
  }
  return found;
}

} // namespace

// Qt refuses documents of more than 1024 levels, which limits the depth of the recursion.
template <class T>
bool findJsonValue(const QJsonObject& object, const QString& key, T& out) {
  bool found = false;
  for (auto member = object.constBegin(); member != object.constEnd(); ++member) {
    const QJsonValue value = member.value();
    if (member.key() == key && takeHit(value, out)) {
      return true;
    }
    if (value.isObject()) {
      found |= findJsonValue<T>(value.toObject(), key, out);
    } else if (value.isArray()) {
      found |= findInElements<T>(value.toArray(), key, out);
    }
  }
  return found;
}

template <class T>
bool parseJsonValue(const std::string& json, const std::string& key, T& out) {
  const QJsonDocument document = parseJsonDocument(json);
  if (!document.isObject()) {
    std::cerr << "Error: Invalid JSON format" << std::endl;
    return false;
  }
  if (!key.empty()) {
    return findJsonValue<T>(document.object(), toQtText(key), out);
  }
  if constexpr (std::is_same_v<T, std::string>) {
    out = document.toJson(QJsonDocument::Indented).toStdString();
    return true;
  } else {
    std::cerr << "Error: searchKey is empty but result type is not std::string" << std::endl;
    return false;
  }
}

template <class T>
std::string getMetadataValue(const riegl::rdb::Pointcloud& pointcloud, const std::string& itemName,
                             const std::string& key, T& out) {
  const std::string text = pointcloud.metaData().get(itemName, std::string());
  return parseJsonValue<T>(text, key, out) ? std::string() : std::string("Error: Key not found");
}

template bool findJsonValue(const QJsonObject&, const QString&, double&);
template bool findJsonValue(const QJsonObject&, const QString&, std::string&);
template bool parseJsonValue(const std::string&, const std::string&, double&);
template bool parseJsonValue(const std::string&, const std::string&, std::string&);
template std::string getMetadataValue(const riegl::rdb::Pointcloud&, const std::string&, const std::string&,
                                      double&);
template std::string getMetadataValue(const riegl::rdb::Pointcloud&, const std::string&, const std::string&,
                                      std::string&);

} // namespace Riegl
