// SPDX-License-Identifier: BSD-3-Clause
// pofx2nimbra: opens the database, reads it block by block, and reads the lever-arm file at the end.
#include <rdb2nimbra/rdb2nimbra.h>

#include "loader/columns/block_size.h"
#include "loader/timebase/calendar.h"
#include "loader/trajectory/leap_second_warnings.h"
#include "loader/trajectory/lever_arm.h"
#include "loader/trajectory/position_conversion.h"
#include "loader/trajectory/trajectory_columns.h"
#include "names/names.h"

#include <cstdint>
#include <exception>
#include <filesystem>

namespace Riegl {

namespace {

/// Arguments of a load; the path in both forms.
struct Request {
  const std::string& path;
  const std::filesystem::path& file;
  Nimbra::Grid& grid;
  const int& epsgCode;
  const ChunkCallback& columnCallback;
};

/// Reads the three metadata items of a trajectory; the texts of two of them are not used.
/// \return whether the time system is UTC
bool readMetadata(const riegl::rdb::pointcloud::MetaData& metaData) {
  bool isUTC = true;
  if (metaData.exists(metadata::geoTag)) {
    metaData.get(metadata::geoTag, "");
  }
  if (metaData.exists(metadata::timeBase)) {
    const TimeBaseDate date = parseDate(metaData.get(metadata::timeBase, ""));
    Ondrel::getWeekDay(date.year, date.month, date.day);
    isUTC = date.isUTC;
    if (!isUTC) {
      warnOfGpsTimeBase();
    }
  }
  if (metaData.exists(metadata::trajectoryInfo)) {
    metaData.get(metadata::trajectoryInfo, "");
  }
  return isUTC;
}

std::string fragmentName(const std::filesystem::path& file, std::uint32_t fragmentIndex) {
  const std::u8string stem = file.stem().u8string();
  return std::string(stem.begin(), stem.end()) + "_Fragment_" + std::to_string(fragmentIndex);
}

/// Reads and publishes all blocks.
/// \return empty, or the text that ends the load
std::string readBlocks(const Request& request, bool isUTC, const CoordinateSystems& systems,
                       riegl::rdb::Pointcloud& database, riegl::rdb::pointcloud::QuerySelect& query,
                       TrajectoryColumns& columns, const GeodeticPositions& positions) {
  std::uint32_t fragmentIndex = 0;
  while (const unsigned int count = query.next(recordsPerBlock)) {
    // The column is converted at its full length; publication cuts it to the block's length.
    const std::string failure = convertPositions(systems, positions, count, columns.positions->blockValues());
    if (!failure.empty()) {
      return failure;
    }
    const Torvel::StrongPtr<Nimbra::FragmentID, Nimbra::FragmentID>& fragment =
        columns.gpsTime->receivingField()->makeFragmentID(fragmentName(request.file, fragmentIndex));
    const ChunkCallback callback = request.columnCallback;
    publishColumns(columns, fragment, count, isUTC, callback);
    iniMe(database, columns, query, request.grid); // it succeeded before the first block
    ++fragmentIndex;
  }
  return std::string();
}

/// Loads all columns and closes the database.
/// \return empty, or the text that ends the load
std::string loadColumns(const Request& request) {
  // The client's objects have to be destroyed in the opposite order of this one.
  const riegl::rdb::Context context("", "");
  riegl::rdb::Pointcloud database{riegl::rdb::Context(context)};
  const riegl::rdb::pointcloud::OpenSettings settings;
  database.open(request.path, settings);
  riegl::rdb::pointcloud::QuerySelect query = database.select("");

  const bool isUTC = readMetadata(database.metaData());
  const CoordinateSystems systems = prepareConversion(request.epsgCode);
  TrajectoryColumns columns;
  const std::string missing = iniMe(database, columns, query, request.grid);
  if (!missing.empty()) {
    return missing;
  }
  GeodeticPositions positions(recordsPerBlock);
  positions.bind(query);
  return readBlocks(request, isUTC, systems, database, query, columns, positions);
}

} // namespace

std::string
pofx2nimbra(const std::string& path, Nimbra::Grid& grid, const int& epsgCode,
            const ChunkCallback& columnCallback, const std::string& leverArmFile,
            const Torvel::StrongPtr<Torvel::LoaderProgress, Torvel::InterfaceBase>& /*progress*/) {
  const std::filesystem::path file(path);
  try {
    const std::string failure = loadColumns({path, file, grid, epsgCode, columnCallback});
    if (!failure.empty()) {
      return failure;
    }
  } catch (const riegl::rdb::Error& error) {
    return std::string(error.what()) + " (" + error.details() + ") for File: " + path;
  } catch (const std::exception& error) {
    return std::string(error.what()) + " For File " + path;
  }
  // Outside the handlers: the exceptions of this file reach the caller.
  return addLeverArm_Misalignment(grid, leverArmFile);
}

} // namespace Riegl
