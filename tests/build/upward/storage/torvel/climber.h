// A header that climbs: the check of the rooms has to refuse it.
#include "pointcloud/roof.h"
