// SPDX-License-Identifier: BSD-3-Clause
// The description of one point attribute.
#pragma once

#include "platform/client/api.h"
#include "platform/client/data_type.h"

#include <limits>
#include <string>

namespace riegl::rdb::pointcloud {

/// Name, meaning, unit and storage of one attribute. A plain value, independent of any database.
class RDB_API PointAttribute {
 public:
  PointAttribute();
  /// All fields of an entry in a table of default attributes; the stored type is the smallest one that holds minimum to
  /// maximum at the resolution.
  PointAttribute(const std::string& name, const std::string& title, const std::string& description,
                 const std::string& unit, const unsigned int& length, const double& resolution,
                 const double& minimum, const double& maximum, const double& defaultValue,
                 const unsigned char& storageCode, const unsigned char& packingCode, const double& scale,
                 const double& invalidValue, const std::string& levels, const std::string& tags,
                 const std::string& namedValues);
  PointAttribute(const PointAttribute&);
  PointAttribute& operator=(const PointAttribute&);
  ~PointAttribute();

  /// The buffer type that preserves all values: the stored type, or FLOAT64 where a scale or an offset applies.
  DataType dataType() const;

  std::string name;        ///< such as "riegl.xyz"
  std::string title;       ///< for people
  std::string description; ///< for people
  std::string unit;        ///< such as "m"
  unsigned int length = 1; ///< values per record
  double resolution = 1;
  double minimum = 0;
  double maximum = 0;
  double defaultValue = 0;
  unsigned char storageCode = 0; ///< kept, not used
  unsigned char packingCode = 0; ///< kept, not used
  double scale = 1;              ///< a value is stored x scale + offset
  double invalidValue = std::numeric_limits<double>::quiet_NaN();
  std::string levels;      ///< kept, not used
  std::string tags;        ///< separated by commas
  std::string namedValues; ///< lines of the form number=text
  double offset = 0;       ///< a value is stored x scale + offset
  DataType storedType = DataType::FLOAT64;
};

} // namespace riegl::rdb::pointcloud
