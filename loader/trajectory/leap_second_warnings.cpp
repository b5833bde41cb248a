// SPDX-License-Identifier: BSD-3-Clause
// The two warnings. Hosts know the texts, so misspellings and blanks stay.
#include "loader/trajectory/leap_second_warnings.h"

#include "model/torvel/objects/console.h"

namespace Riegl {

namespace {

/// A page on the leap seconds between GPS time and UTC.
constexpr const char* leapSecondsExplained =
    "https://www.cnmoc.usff.navy.mil/Our-Commands/United-States-Naval-Observatory/Precise-Time-Department/"
    "Global-Positioning-System/USNO-GPS-Time-Transfer/Leap-Seconds/";

} // namespace

void warnOfGpsTimeBase() {
  Torvel::Console()
      << "pofx2nimbra: !!!!!!!!!!!!!!!!!!!\n"
         "WARNING! Time base is GPS instead of UTC. RXP files and trajectory need to be in the "
         "same time scheme (Either both in UTC or GPS).If you have rxp in UTC and trajectory in "
         "GPS-Time you need to shift trajectory of 18 sec. (This may change: "
      << leapSecondsExplained << " )\n!!!!!!!!!!!!!";
  Torvel::Console()
      << "WARNING:  Cheack if leap seconds (current 18.0 seconds) are still valid. For example: "
      << leapSecondsExplained;
}

} // namespace Riegl
