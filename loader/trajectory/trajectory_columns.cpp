// SPDX-License-Identifier: BSD-3-Clause
// Checks, makes, binds and publishes the column buffers of a trajectory load.
#include "loader/trajectory/trajectory_columns.h"

#include "loader/columns/block_size.h"
#include "names/names.h"

#include <array>

namespace Riegl {

namespace {

/// The trajectory's form of a column buffer: always in the grid's default place.
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
  const char* attribute;
  const char* text; ///< result of the load where the attribute is missing
};

constexpr std::array<Requirement, 8> requirements{{
    {attributes::pofTimestamp, "pofx2nimbra::iniMe: no timestamp"},
    {attributes::pofRoll, "pofx2nimbra::iniMe: no pof_roll"},
    {attributes::pofPitch, "pofx2nimbra::iniMe: no pof_pitch"},
    {attributes::pofYaw, "pofx2nimbra::iniMe: no pof_yaw"},
    {attributes::pofPathLength, "pofx2nimbra::iniMe: no pof_path_length"},
    {attributes::pofLatitude, "pofx2nimbra::iniMe: no pof_latitude"},
    {attributes::pofLongitude, "pofx2nimbra::iniMe: no pof_longitude"},
    {attributes::pofHeight, "pofx2nimbra::iniMe: no pof_height"},
}};

template <class T>
void makeBuffer(Column<T>& column, const char* field, Nimbra::Grid& grid) {
  column = Column<T>(new PofxData<T>(field, grid, true, recordsPerBlock));
}

void makeBound(Column<double>& column, const char* field, const char* attribute,
               riegl::rdb::pointcloud::QuerySelect& query, Nimbra::Grid& grid) {
  makeBuffer(column, field, grid);
  query.bind(attribute, riegl::rdb::pointcloud::DataType(10), column->firstElement(), 0);
}

} // namespace

std::string iniMe(riegl::rdb::Pointcloud& database, TrajectoryColumns& columns,
                  riegl::rdb::pointcloud::QuerySelect& query, Nimbra::Grid& grid) {
  for (const Requirement& requirement : requirements) {
    if (!database.pointAttribute().exists(requirement.attribute)) {
      return requirement.text;
    }
  }
  makeBound(columns.gpsTime, "GPSTime", attributes::pofTimestamp, query, grid);
  makeBound(columns.roll, "Roll", attributes::pofRoll, query, grid);
  makeBound(columns.pitch, "Pitch", attributes::pofPitch, query, grid);
  makeBound(columns.yaw, "Yaw", attributes::pofYaw, query, grid);
  makeBuffer(columns.positions, "Positions", grid); // filled from three attributes
  makeBound(columns.pathLength, "PofPathLength", attributes::pofPathLength, query, grid);
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
