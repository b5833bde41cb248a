// SPDX-License-Identifier: BSD-3-Clause
// The description of one point attribute.
#include "platform/client/point_attribute.h"

#include <cmath>

namespace riegl::rdb::pointcloud {
namespace {

template <class Integer>
bool holds(double minimum, double maximum) {
  using Limits = std::numeric_limits<Integer>;
  return minimum >= static_cast<double>(Limits::min()) && maximum <= static_cast<double>(Limits::max());
}

DataType smallestType(double resolution, double minimum, double maximum) {
  const bool whole = std::floor(resolution) == resolution && std::floor(minimum) == minimum;
  if (!whole || !(minimum <= maximum)) {
    return DataType::FLOAT64;
  }
  if (holds<unsigned char>(minimum, maximum)) {
    return DataType::UINT8;
  }
  if (holds<signed char>(minimum, maximum)) {
    return DataType::INT8;
  }
  if (holds<unsigned short>(minimum, maximum)) {
    return DataType::UINT16;
  }
  if (holds<short>(minimum, maximum)) {
    return DataType::INT16;
  }
  if (holds<unsigned int>(minimum, maximum)) {
    return DataType::UINT32;
  }
  if (holds<int>(minimum, maximum)) {
    return DataType::INT32;
  }
  if (holds<unsigned long long>(minimum, maximum)) {
    return DataType::UINT64;
  }
  return holds<long long>(minimum, maximum) ? DataType::INT64 : DataType::FLOAT64;
}

} // namespace

PointAttribute::PointAttribute() = default;

PointAttribute::PointAttribute(const std::string& name_, const std::string& title_,
                               const std::string& description_, const std::string& unit_,
                               const unsigned int& length_, const double& resolution_, const double& minimum_,
                               const double& maximum_, const double& defaultValue_,
                               const unsigned char& storageCode_, const unsigned char& packingCode_,
                               const double& scale_, const double& invalidValue_, const std::string& levels_,
                               const std::string& tags_, const std::string& namedValues_)
    : name(name_), title(title_), description(description_), unit(unit_), length(length_),
      resolution(resolution_), minimum(minimum_), maximum(maximum_), defaultValue(defaultValue_),
      storageCode(storageCode_), packingCode(packingCode_), scale(scale_), invalidValue(invalidValue_),
      levels(levels_), tags(tags_), namedValues(namedValues_),
      storedType(smallestType(resolution_, minimum_, maximum_)) {}

PointAttribute::PointAttribute(const PointAttribute&) = default;

PointAttribute& PointAttribute::operator=(const PointAttribute&) = default;

PointAttribute::~PointAttribute() = default;

DataType PointAttribute::dataType() const {
  return scale == 1 && offset == 0 ? storedType : DataType::FLOAT64;
}

} // namespace riegl::rdb::pointcloud
