// SPDX-License-Identifier: BSD-3-Clause
// Front header of the embedded database client: everything a reader of databases needs.
// Writers include container/write/writer.h, checkers container/read/verify.h.
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
