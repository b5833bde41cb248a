// SPDX-License-Identifier: BSD-3-Clause
// The library's whole interface: nine exported functions in the namespace Riegl.
//
//   rdbx2Z4, pofx2nimbra                            load a point cloud or shots, load a trajectory
//   parseDate, getIsUTCandWeekday, modifyGPSTime    the time base of a database
//   AttributesForFWFProcessing:: speak, overwrite_t_ref, getAttributesViaJson, addAttributeToZ4File
//                                                   what full-waveform processing must know
#pragma once

#include "loader/pointcloud/rdbx2Z4.h"
#include "loader/timebase/date.h"
#include "loader/timebase/rebase.h"
#include "loader/timebase/week_day.h"
#include "loader/trajectory/pofx2nimbra.h"
#include "loader/waveform/attributes_for_fwf_processing.h"
