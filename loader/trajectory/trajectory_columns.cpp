// SPDX-License-Identifier: BSD-3-Clause
// Checks, makes, binds and publishes the column buffers of a trajectory load.
#include "loader/trajectory/trajectory_columns.h"

#include "loader/columns/block_size.h"
#include "loader/trajectory/bind_attribute.h"

#include <array>

namespace Riegl {

namespace {

/// The column buffer of a trajectory: its field lies in the grid's default place.
template <class T>
class PofxData final : public Z4Data<T> {
 public:
  using Z4Data<T>::Z4Data;
  ~PofxData() override = default;

  void publish(const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment, unsigned int count,
               const bool& isUTC, const ChunkCallback& callback) {
    this->publishBlock(fragment, count, isUTC, callback);
  }
};

template <class T>
using Column = Torvel::StrongPtr<Z4Data<T>, Z4Data<T>>;

struct Requirement {
  Attribute attribute;
  const char* text; ///< result of the load if the attribute is missing
};

constexpr std::array<Requirement, 8> requirements{{
    {attributes::named("riegl.pof_timestamp"), "pofx2nimbra::iniMe: no timestamp"},
    {attributes::named("riegl.pof_roll"), "pofx2nimbra::iniMe: no pof_roll"},
    {attributes::named("riegl.pof_pitch"), "pofx2nimbra::iniMe: no pof_pitch"},
    {attributes::named("riegl.pof_yaw"), "pofx2nimbra::iniMe: no pof_yaw"},
    {attributes::named("riegl.pof_path_length"), "pofx2nimbra::iniMe: no pof_path_length"},
    {attributes::named("riegl.pof_latitude"), "pofx2nimbra::iniMe: no pof_latitude"},
    {attributes::named("riegl.pof_longitude"), "pofx2nimbra::iniMe: no pof_longitude"},
    {attributes::named("riegl.pof_height"), "pofx2nimbra::iniMe: no pof_height"},
}};

consteval bool requirementsAreDoubles() {
  for (const Requirement& requirement : requirements) {
    if (requirement.attribute.element != ElementType::float64 || requirement.attribute.mostValues != 1) {
      return false;
    }
  }
  return true;
}

static_assert(requirementsAreDoubles(), "the buffers of a trajectory have one double per record");

template <class T>
void makeBuffer(Column<T>& column, const char* field, Nimbra::Grid& grid) {
  column = Column<T>(new PofxData<T>(field, grid, true, recordsPerBlock));
}

void makeBound(Column<double>& column, const char* field, const Attribute& attribute,
               riegl::rdb::pointcloud::QuerySelect& query, Nimbra::Grid& grid) {
  makeBuffer(column, field, grid);
  bindAttribute(query, attribute, column->firstElement());
}

} // namespace

std::string iniMe(riegl::rdb::Pointcloud& database, TrajectoryColumns& columns,
                  riegl::rdb::pointcloud::QuerySelect& query, Nimbra::Grid& grid) {
  for (const Requirement& requirement : requirements) {
    if (!database.pointAttribute().exists(requirement.attribute.name)) {
      return requirement.text;
    }
  }
  makeBound(columns.gpsTime, "GPSTime", attributes::named("riegl.pof_timestamp"), query, grid);
  makeBound(columns.roll, "Roll", attributes::named("riegl.pof_roll"), query, grid);
  makeBound(columns.pitch, "Pitch", attributes::named("riegl.pof_pitch"), query, grid);
  makeBound(columns.yaw, "Yaw", attributes::named("riegl.pof_yaw"), query, grid);
  makeBuffer(columns.positions, "Positions", grid); // filled from three attributes
  makeBound(columns.pathLength, "PofPathLength", attributes::named("riegl.pof_path_length"), query, grid);
  return std::string();
}

void publishColumns(TrajectoryColumns& columns,
                    const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment,
                    unsigned int count, const bool& isUTC, const ChunkCallback& callback) {
  const auto publish = [&]<class T>(const Column<T>& column) {
    if (column) {
      static_cast<PofxData<T>&>(*column).publish(fragment, count, isUTC, callback);
    }
  };
  publish(columns.gpsTime);
  publish(columns.roll);
  publish(columns.pitch);
  publish(columns.yaw);
  publish(columns.positions);
  publish(columns.pathLength);
}

} // namespace Riegl
