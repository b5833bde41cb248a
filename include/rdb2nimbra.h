// The library's whole interface: nine exported functions in the namespace Riegl.
//
//   rdbx2Z4, pofx2nimbra                            load a point cloud or shots, load a trajectory
//   parseDate, getIsUTCandWeekday, modifyGPSTime    the time base of a database
//   AttributesForFWFProcessing:: speak, overwrite_t_ref, getAttributesViaJson, addAttributeToZ4File
//                                                   what full-waveform processing must know
#pragma once

#include "pointcloud/rdbx2Z4.h"
#include "timebase/date.h"
#include "timebase/rebase.h"
#include "timebase/week_day.h"
#include "trajectory/pofx2nimbra.h"
#include "waveform/attributes_for_fwf_processing.h"
