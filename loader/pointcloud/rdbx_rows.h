// SPDX-License-Identifier: BSD-3-Clause
// The vocabulary of the point-cloud import: which attribute becomes which field, in which element type.
// The rows themselves: rdbx_rows.cpp
#pragma once

#include <array>
#include <cstddef>

namespace Riegl {

/// Element types of the columns.
enum class Element { point, vector, rgba, float64, float32, int16, uint16, int32, uint32, uint64, uint8 };

/// One column of the import.
struct RdbxRow {
  const char* name;                 ///< attribute that the database is asked for
  const char* field;                ///< field that it becomes
  Element element;                  ///< element type of the field
  int dataType;                     ///< number of the client's data type that the buffer is bound as
  const char* boundName = nullptr;  ///< attribute that is bound, where it is another one than `name`
  bool onlyWithAll = false;         ///< only loaded with all attributes
  bool toChart = true;              ///< false: the field lies in "ScannerCoordinateSystem"
  bool bufferAlways = false;        ///< the buffer, and so the field, exists without the attribute too
  bool statedTwice = false;         ///< asked, made and bound twice in a row; the second buffer stays
  unsigned int valuesPerRecord = 1; ///< room that the client needs a record, in elements of the buffer
};

inline constexpr std::size_t rdbxRowCount = 61;

/// The rows in their order, which is also the order in which fields are made and blocks published.
extern const std::array<RdbxRow, rdbxRowCount> rdbxRows;

/// Places of the rows that the load itself has to know.
inline constexpr std::size_t positionsRow = 0;
inline constexpr std::size_t gpsTimeRow = 1;
inline constexpr std::size_t shotTimeStampRow = 41;

} // namespace Riegl
