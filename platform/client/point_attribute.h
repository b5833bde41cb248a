// SPDX-License-Identifier: BSD-3-Clause
// The description of one point attribute.
#pragma once

#include "platform/client/api.h"
#include "platform/client/data_type.h"

#include <limits>
#include <string>

namespace riegl::rdb::pointcloud {

/// What one attribute is called, measures and is stored as. A plain value, independent of any database.
class RDB_API PointAttribute {
 public:
  PointAttribute();
  /// The form in which tables of default attributes are written; the stored type is the smallest one that
  /// holds minimum to maximum at the resolution.
  PointAttribute(const std::string& name, const std::string& title, const std::string& description,
                 const std::string& unit, const unsigned int& length, const double& resolution,
                 const double& minimum, const double& maximum, const double& defaultValue,
                 const unsigned char& storageCode, const unsigned char& packingCode, const double& scale,
                 const double& invalidValue, const std::string& levels, const std::string& tags,
                 const std::string& namedValues);
  PointAttribute(const PointAttribute&);
  PointAttribute& operator=(const PointAttribute&);
  ~PointAttribute();

  /// The buffer type that loses nothing: the stored type, or FLOAT64 where a scale or an offset applies.
  DataType dataType() const;

  std::string name;        ///< such as "riegl.xyz"
  std::string title;       ///< for people
  std::string description; ///< for people
  std::string unit;        ///< such as "m"
  unsigned int length = 1; ///< values a record
  double resolution = 1;
  double minimum = 0;
  double maximum = 0;
  double defaultValue = 0;
  unsigned char storageCode = 0; ///< carried along, without meaning here
  unsigned char packingCode = 0; ///< carried along, without meaning here
  double scale = 1;              ///< a value is stored x scale + offset
  double invalidValue = std::numeric_limits<double>::quiet_NaN();
  std::string levels;      ///< carried along, without meaning here
  std::string tags;        ///< separated by commas
  std::string namedValues; ///< lines of the form number=text
  double offset = 0;       ///< a value is stored x scale + offset
  DataType storedType = DataType::FLOAT64;
};

} // namespace riegl::rdb::pointcloud
