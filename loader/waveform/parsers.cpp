// SPDX-License-Identifier: BSD-3-Clause
// Parses the reflectance table and the exponential decomposition.
#include "loader/waveform/parsers.h"

#include "loader/database/json_document.h"
#include "model/torvel/objects/console.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <cstddef>
#include <iostream>
#include <utility>

namespace Riegl {
namespace {

constexpr std::size_t largestTableBytes = 256000;

/// Writes the numbers of `array` to the front of `table`. Elements that are neither number nor text are
/// skipped.
void fillTable(const QJsonArray& array, Torvel::Chunk<float>& table) {
  std::size_t next = 0;
  for (const QJsonValue element : array) {
    if (element.isDouble()) {
      table[next++] = static_cast<float>(element.toDouble(0.0));
    } else if (element.isString()) {
      table[next++] = static_cast<float>(element.toString().toDouble());
    }
  }
}

std::vector<double> numbersOf(const QJsonValue& value) {
  const QJsonArray array = value.toArray();
  std::vector<double> numbers;
  numbers.reserve(static_cast<std::size_t>(array.size()));
  for (const QJsonValue element : array) {
    numbers.push_back(element.toDouble(0.0));
  }
  return numbers;
}

ExponentialDecomposition decompositionOf(const QJsonObject& channel) {
  ExponentialDecomposition result;
  result.delay = channel.value(QLatin1String("delay")).toDouble(0.0);
  result.scale = channel.value(QLatin1String("scale")).toDouble(0.0);
  result.a_lin = channel.value(QLatin1String("a_lin")).toDouble(0.0);
  const QJsonObject parameter = channel.value(QLatin1String("parameter")).toObject();
  result.A = numbersOf(parameter.value(QLatin1String("A")));
  result.B = numbersOf(parameter.value(QLatin1String("B")));
  result.gamma = numbersOf(parameter.value(QLatin1String("gamma")));
  result.omega = numbersOf(parameter.value(QLatin1String("omega")));
  return result;
}

} // namespace

bool parse_reflectance_table(const std::string& json,
                             Torvel::StrongPtr<Torvel::Chunk<float>, Torvel::ChunkBase>& table) {
  const QJsonDocument document = parseJsonDocument(json);
  if (!document.isObject()) {
    Torvel::Console() << "[parse_reflectance_table] Invalid JSON format";
    return false;
  }
  const QJsonObject object = document.object();
  if (!object.contains(QLatin1String("pointcloud"))) {
    Torvel::Console() << "[parse_reflectance_table] No 'pointcloud' found in JSON";
    return false;
  }
  const QJsonObject pointcloud = object.value(QLatin1String("pointcloud")).toObject();
  if (!pointcloud.contains(QLatin1String("refltab"))) {
    Torvel::Console() << "[parse_reflectance_table] No 'refltab' found in pointcloud";
    return false;
  }
  const QJsonArray array = pointcloud.value(QLatin1String("refltab")).toArray();
  table = new Torvel::Chunk<float>(static_cast<std::size_t>(array.size()));
  fillTable(array, *table);
  if (table->size() * sizeof(float) > largestTableBytes) {
    // 64000 elements; "64k" in the text is not 65536.
    Torvel::Console() << "[parse_reflectance_table] Warning: refl_table exceeds 64k entries";
    return false;
  }
  return true;
}

bool parse_exponential_decomposition(const std::string& json, ExponentialDecompositionMap& channels) {
  QJsonParseError error;
  const QJsonDocument document = parseJsonDocument(json, &error);
  if (error.error != QJsonParseError::NoError || !document.isObject()) {
    std::cerr << "JSON parse error: " << toStdText(error.errorString()) << std::endl;
    return false;
  }
  const QJsonObject object = document.object();
  for (auto member = object.constBegin(); member != object.constEnd(); ++member) {
    ExponentialDecomposition channel = decompositionOf(member.value().toObject());
    channels[toStdText(member.key())] = std::move(channel);
  }
  return true;
}

} // namespace Riegl
