// SPDX-License-Identifier: BSD-3-Clause
// rdbx2Z4: opens the database, prepares the grid, and reads the database block by block.
#include <rdb2nimbra/rdb2nimbra.h>

#include "loader/columns/block_size.h"
#include "loader/columns/named_field.h"
#include "loader/pointcloud/rdbx_columns.h"

#include <cstdint>
#include <filesystem>

namespace Riegl {

namespace {

/// Makes the two representations and their fields "Positions", which share one collection of fragments: a
/// fragment made for one field exists for both.
void prepareGrid(Nimbra::Grid& grid) {
  Nimbra::Representation& scanner = grid.makeCartesianRepresentation(3, "ScannerCoordinateSystem", 0);
  Nimbra::Representation& chart = grid.makeCartesianRepresentation(3, "StandardCartesianChart3D", 0);
  const Nimbra::Field::Pointer inChart = makeNamedField(chart, "Positions");
  const Nimbra::Field::Pointer inScanner(new Nimbra::Field(inChart->fragmentIDCollection()));
  makeNamedField(scanner, "Positions") = inScanner;
}

bool isShotDatabase(const std::string& path) {
  return std::filesystem::path(path).extension().u8string() == u8".sodx";
}

riegl::rdb::Pointcloud openContext(const riegl::rdb::Context& context) {
  return riegl::rdb::Pointcloud(riegl::rdb::Context(context));
}

/// Publishes one block.
/// \return empty, or the text that ends the load
std::string publishPass(RdbxColumns& columns, const std::string& fragmentName, unsigned int count,
                        const TimeSystemInfo& timeSystem) {
  const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment =
      columns.positions()->receivingField()->makeFragmentID(fragmentName);
  if (columns.filled(gpsTimeRow) && columns.filled(shotTimeStampRow)) {
    return "rdbx2Z4: Error both fields for GPSTime are set. Need to check this....";
  }
  std::string timeFixError;
  const ChunkCallback timeFix = [error = &timeFixError, weekDay = timeSystem.weekDay](
                                    const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>& chunk,
                                    const std::string& name, const bool& isUTC) {
    modifyGPSTime(*error, weekDay, chunk, name, isUTC);
  };
  publishRdbxColumns(columns, fragment, count, timeSystem.isUTC, timeFix);
  return timeFixError;
}

std::string load(const std::string& path, Nimbra::Grid& grid, const bool& loadAllAttributes) {
  const riegl::rdb::Context context("", "");
  riegl::rdb::Pointcloud database = openContext(context);
  const riegl::rdb::pointcloud::OpenSettings settings;
  database.open(path, settings);
  const TimeSystemInfo timeSystem = getIsUTCandWeekday(database.metaData());
  riegl::rdb::pointcloud::QuerySelect query = database.select("");

  prepareGrid(grid);
  const bool isSodx = isShotDatabase(path);

  // Destroyed before the query, which writes to the buffers.
  RdbxColumns columns;
  std::string failure = bindRdbxColumns(database, columns, query, grid, loadAllAttributes, isSodx);
  if (!failure.empty()) {
    return failure;
  }
  std::uint32_t fragmentIndex = 0;
  while (const unsigned int count = query.next(recordsPerBlock)) {
    std::string passFailure =
        publishPass(columns, "Fragment_" + std::to_string(fragmentIndex), count, timeSystem);
    if (!passFailure.empty()) {
      return passFailure;
    }
    bindRdbxColumns(database, columns, query, grid, loadAllAttributes, false);
    ++fragmentIndex;
  }
  return std::string();
}

} // namespace

std::string rdbx2Z4(const std::string& path, Nimbra::Grid& grid, const int& /*reserved*/,
                    const bool& loadAllAttributes,
                    const Torvel::StrongPtr<Torvel::LoaderProgress, Torvel::InterfaceBase>& /*progress*/) {
  try {
    return load(path, grid, loadAllAttributes);
  } catch (const riegl::rdb::Error& error) {
    return std::string(error.what()) + " (" + error.details() + ")";
  } catch (const std::exception& error) {
    return error.what();
  }
}

} // namespace Riegl
