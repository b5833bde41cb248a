// SPDX-License-Identifier: BSD-3-Clause
// The operations of the client.
#include "quarry/database.h"

#include "contents.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>

namespace riegl::rdb {

struct Error::Texts {
  std::string what;
  std::string details;
};

Error::Error(const std::string& what, const std::string& details)
    : texts_(std::make_shared<Texts>(Texts{what, details})) {}
Error::Error(const Error&) noexcept = default;
Error& Error::operator=(const Error&) noexcept = default;
Error::~Error() = default;
const char* Error::what() const noexcept {
  return texts_->what.c_str();
}
const char* Error::details() const noexcept {
  return texts_->details.c_str();
}

Context::Context(const std::string&, const std::string&) {}

} // namespace riegl::rdb

namespace quarry {

namespace {

using riegl::rdb::Error;
using riegl::rdb::pointcloud::DataType;

/// How many values per record the buffers of a known attribute have room for.
struct Standard {
  std::string_view name;
  std::uint64_t least;
  std::uint64_t most;
};

constexpr Standard standards[] = {
    {"riegl.xyz", 3, 3},
    {"riegl.xyz_socs", 3, 3},
    {"riegl.direction_medium", 3, 3},
    {"riegl.rgba", 4, 4},
    {"riegl.shot_origin", 3, 3},
    {"riegl.shot_direction", 3, 3},
    {"riegl.pof_xyz", 3, 3},
    {"riegl.hydro_intersection_point", 1, 3},
    {"riegl.hydro_intersection_normal", 1, 3},
};

constexpr std::string_view scalars[] = {
    "timestamp",
    "amplitude",
    "reflectance",
    "deviation",
    "pulse_width",
    "target_index",
    "target_count",
    "mirror_facet",
    "scan_segment",
    "mta_uncertain_point",
    "mta_zone",
    "window_echo_impact_corrected",
    "class",
    "start_of_scan_line",
    "source_indicator",
    "fwa",
    "waveform_available",
    "wfm_sbl_id",
    "wfm_echo_time_offset",
    "scan_angle",
    "scan_direction",
    "source_index",
    "wfm_sbl_time_offset",
    "id",
    "wfm_sbl_channel",
    "wfm_sbl_mean",
    "wfm_sbl_std_dev",
    "wfm_sda_first",
    "wfm_sda_count",
    "wfm_sample_value",
    "line_angle_coarse",
    "echo_first",
    "echo_count",
    "shot_timestamp_hr",
    "wfm_sbl_first",
    "wfm_sbl_count",
    "raw_range",
    "gain",
    "dyntrig_uncertain_point",
    "scan_line_index",
    "pof_latitude",
    "pof_longitude",
    "pof_height",
    "pof_roll",
    "pof_pitch",
    "pof_yaw",
    "pof_roll_ned",
    "pof_pitch_ned",
    "pof_yaw_ned",
    "pof_timestamp",
    "pof_path_length",
};

/// An attribute that no one knows may have any length.
bool isStandardLength(std::string_view name, std::uint64_t length) {
  for (const Standard& standard : standards) {
    if (standard.name == name) {
      return standard.least <= length && length <= standard.most;
    }
  }
  for (const std::string_view scalar : scalars) {
    if (name.starts_with("riegl.") && name.substr(6) == scalar) {
      return length == 1;
    }
  }
  return true;
}

/// Integers saturate, fractions are rounded half to even, not-a-number becomes 0.
template <class To, class From>
To converted(From value) {
  if constexpr (std::is_same_v<To, From> || std::is_floating_point_v<To>) {
    return static_cast<To>(value);
  } else if constexpr (std::is_floating_point_v<From>) {
    const double rounded = std::nearbyint(static_cast<double>(value));
    const double below = static_cast<double>(std::numeric_limits<To>::min());
    const double above = std::ldexp(1.0, std::numeric_limits<To>::digits); // one more than the largest
    if (std::isnan(rounded)) {
      return 0;
    }
    if (rounded >= above) {
      return std::numeric_limits<To>::max();
    }
    return rounded <= below ? std::numeric_limits<To>::min() : static_cast<To>(rounded);
  } else {
    if (std::cmp_less(value, std::numeric_limits<To>::min())) {
      return std::numeric_limits<To>::min();
    }
    return std::cmp_greater(value, std::numeric_limits<To>::max()) ? std::numeric_limits<To>::max()
                                                                   : static_cast<To>(value);
  }
}

/// Writes values to memory that may lie anywhere.
using Writer = void (*)(const Column& column, std::uint64_t first, std::uint64_t count, void* target);

template <class To>
void write(const Column& column, std::uint64_t first, std::uint64_t count, void* target) {
  std::visit(
      [&](const auto& values) {
        auto* bytes = static_cast<unsigned char*>(target);
        for (std::uint64_t at = 0; at < count; ++at, bytes += sizeof(To)) {
          const To value = converted<To>(values[first + at]);
          std::memcpy(bytes, &value, sizeof value);
        }
      },
      column.values);
}

Writer writerOf(DataType type) {
  switch (type) {
  case DataType::byte1:
    return write<std::uint8_t>;
  case DataType::word2:
    return write<std::uint16_t>;
  case DataType::signed2:
    return write<std::int16_t>;
  case DataType::word4:
    return write<std::uint32_t>;
  case DataType::signed4:
    return write<std::int32_t>;
  case DataType::word8:
    return write<std::uint64_t>;
  case DataType::real4:
    return write<float>;
  case DataType::real8:
    return write<double>;
  }
  throw Error("The buffer has an unknown type.", std::to_string(static_cast<unsigned>(type)));
}

} // namespace

/// What the copies of a query share.
struct Reading {
  struct Target {
    const Column* column;
    Writer writer;
    void* buffer;
  };
  std::shared_ptr<const Contents> contents;
  std::uint64_t position = 0;
  std::map<std::string, Target> targets;
};

} // namespace quarry

namespace riegl::rdb {

namespace pointcloud {

bool MetaData::exists(const std::string& name) const {
  return contents_->items.contains(name);
}

std::string MetaData::get(const std::string& name, const std::string& fallback) const {
  const auto found = contents_->items.find(name);
  return found != contents_->items.end() ? found->second : fallback;
}

bool PointAttributes::exists(const std::string& name) const {
  return contents_->columns.contains(name);
}

QuerySelect::QuerySelect(std::shared_ptr<quarry::Reading> reading) : reading_(std::move(reading)) {}

void QuerySelect::bind(const std::string& name, DataType type, void* buffer, int stride) {
  const auto& columns = reading_->contents->columns;
  const auto found = columns.find(name);
  if (found == columns.end()) {
    throw Error("The attribute does not exist.", name);
  }
  const std::uint64_t length = found->second.length;
  if (!quarry::isStandardLength(name, length)) {
    throw Error("The attribute has another length than its name stands for.",
                name + ": " + std::to_string(length));
  }
  if (stride != 0) {
    throw Error("Records in a buffer are tightly packed.", name + ": stride " + std::to_string(stride));
  }
  reading_->targets[name] = {&found->second, quarry::writerOf(type), buffer};
}

unsigned int QuerySelect::next(unsigned int count) {
  const std::uint64_t left = reading_->contents->records - reading_->position;
  const auto read = static_cast<unsigned int>(std::min<std::uint64_t>(left, count));
  if (read != 0) {
    for (const auto& [name, target] : reading_->targets) {
      const std::uint64_t length = target.column->length;
      target.writer(*target.column, reading_->position * length, read * length, target.buffer);
    }
  }
  reading_->position += read;
  return read;
}

void Catalogue::use(std::shared_ptr<const quarry::Contents> opened) {
  items.contents_ = opened;
  attributes.contents_ = opened;
  contents = std::move(opened);
}

} // namespace pointcloud

Pointcloud::Pointcloud(Context) : catalogue_(std::make_unique<pointcloud::Catalogue>()) {
  catalogue_->use(std::make_shared<quarry::Contents>());
}
Pointcloud::~Pointcloud() = default;

void Pointcloud::open(const std::string& path, const pointcloud::OpenSettings&) try {
  catalogue_->use(quarry::readFile(path));
} catch (const Error&) {
  throw;
} catch (const std::exception& error) {
  throw Error("The database cannot be opened.", path + ": " + error.what());
}

pointcloud::MetaData& Pointcloud::metaData() {
  return catalogue_->items;
}
const pointcloud::MetaData& Pointcloud::metaData() const {
  return catalogue_->items;
}
pointcloud::PointAttributes& Pointcloud::pointAttribute() const {
  return catalogue_->attributes;
}

pointcloud::QuerySelect Pointcloud::select(const std::string& filter) {
  if (!filter.empty()) {
    throw Error("Queries have no filters here.", filter);
  }
  const auto reading = std::make_shared<quarry::Reading>();
  reading->contents = catalogue_->contents;
  return pointcloud::QuerySelect(reading);
}

} // namespace riegl::rdb
