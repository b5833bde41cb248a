// SPDX-License-Identifier: BSD-3-Clause
// Front header of the embedded database client: all that a program needs to read databases.
// container/write/writer.h writes them, container/read/verify.h checks them.
#pragma once

#include "platform/client/context.h"
#include "platform/client/data_type.h"
#include "platform/client/error.h"
#include "platform/client/meta_data.h"
#include "platform/client/open_settings.h"
#include "platform/client/point_attribute.h"
#include "platform/client/point_attributes.h"
#include "platform/client/pointcloud.h"
#include "platform/client/query_select.h"
