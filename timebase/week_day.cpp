// Asks the database for its time base and the calendar for the day.
#include "timebase/week_day.h"

#include "rdb/names.h"
#include "timebase/calendar.h"
#include "timebase/date.h"

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
