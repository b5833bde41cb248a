// Front header of the embedded database client: everything a reader of databases needs.
// Writers include platform/rdb/writer.h, checkers platform/rdb/verify.h.
#pragma once

#include "platform/rdb/context.h"
#include "platform/rdb/data_type.h"
#include "platform/rdb/error.h"
#include "platform/rdb/meta_data.h"
#include "platform/rdb/open_settings.h"
#include "platform/rdb/point_attribute.h"
#include "platform/rdb/point_attributes.h"
#include "platform/rdb/pointcloud.h"
#include "platform/rdb/query_select.h"
