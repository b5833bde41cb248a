// SPDX-License-Identifier: BSD-3-Clause
// getIsUTCandWeekday: reads the time base of a database and looks its date up in the calendar.
#include <rdb2nimbra/rdb2nimbra.h>

#include "loader/timebase/calendar.h"
#include "names/names.h"

namespace Riegl {

TimeSystemInfo getIsUTCandWeekday(const riegl::rdb::pointcloud::MetaData& metaData) {
  TimeSystemInfo system;
  if (!metaData.exists(metadata::timeBase)) {
    return system;
  }
  const TimeBaseDate date = parseDate(metaData.get(metadata::timeBase, ""));
  system.weekDay = Ondrel::getWeekDay(date.year, date.month, date.day);
  system.isUTC = date.isUTC;
  return system;
}

} // namespace Riegl
