// SPDX-License-Identifier: BSD-3-Clause
// The whole interface of the library: nine exported functions in the namespace Riegl, and their values.
//
// Longer than other headers, so that one file describes the library from top to bottom:
//   rdbx2Z4, pofx2nimbra                            load a point cloud or shots; load a trajectory
//   parseDate, getIsUTCandWeekday, modifyGPSTime    the time base of a database
//   AttributesForFWFProcessing::getAttributesViaJson, addAttributeToZ4File, speak, overwrite_t_ref
//                                                   scanner parameters for full-waveform processing
//
// In the examples `grid` is a Torvel::StrongPtr<Nimbra::Grid, Nimbra::Grid::Family>, `database` an open
// riegl::rdb::Pointcloud. docs/columns.md lists the columns that stand on the grid after a load.
#pragma once

#include <rdb2nimbra/client.h>
#include <rdb2nimbra/export.h>

#include "model/nimbra/grid.h"
#include "model/torvel/objects/interface.h"
#include "model/torvel/references/chunk.h"

#include <cstdint>
#include <functional>
#include <string>

namespace Riegl {

/// Loads a point-cloud database onto a grid. Every column becomes a field, every block of 5000000 records a
/// fragment that all fields share. The time column "GPSTime" is shifted onto the seconds of the week
/// (modifyGPSTime).
///
/// \param path               the database, UTF-8; the exact extension ".sodx" adds the waveform attributes
/// \param grid               stays the caller's; receives representations, fields and fragments. It is never
///                           cleared, and what a failed load has put there stays. The library keeps no
///                           reference to it.
/// \param reserved           not used
/// \param loadAllAttributes  true also loads the thirteen columns that are left out otherwise
/// \param progress           not used; may be null
/// \return empty on success, otherwise a message for the user
/// \errors  only as the result: failures of the database client ("what (details)"), exhausted memory
///          ("std::bad_alloc"), a time column that modifyGPSTime refuses, missing waveform metadata
/// \threads runs on the caller's thread and starts none. Loads onto distinct grids may run at the same time;
///          the grid must not be used during its load.
///
///     const std::string failure = Riegl::rdbx2Z4("scan.rdbx", *grid, 0, false, nullptr);
///     if (!failure.empty()) {
///       std::cerr << failure << '\n';
///     }
RDB2NIMBRA_EXPORT std::string
rdbx2Z4(const std::string& path, Nimbra::Grid& grid, const int& reserved, const bool& loadAllAttributes,
        const Torvel::StrongPtr<Torvel::LoaderProgress, Torvel::InterfaceBase>& progress);

/// Called for each column of each block before the block goes to the grid, on the thread of the load.
///
/// \param 1  the block's values, cut to the block's length; changes in place reach the grid
/// \param 2  name of the field
/// \param 3  true where the time system of the database is UTC
/// \errors  an exception ends the load; the text of a std::exception becomes the load's result
using ChunkCallback = std::function<void(const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>&,
                                         const std::string&, const bool&)>;

/// Loads a trajectory database (`.pofx`) onto a grid, one fragment per block of 5000000 records. The fields
/// "GPSTime" (s), "Roll", "Pitch", "Yaw" (degrees) and "PofPathLength" (m) hold the values of the database.
/// "Positions" holds its longitudes, latitudes and heights, converted to the coordinate system of the EPSG
/// code.
///
/// \param path            the database, UTF-8; its stem is the first part of the fragment names
/// \param grid            as for rdbx2Z4; also receives the attributes "LeverArm" and "Misalignment"
/// \param epsgCode        target coordinate system; a code that PROJ does not know fails at the first block
/// \param columnCallback  may be empty. The load itself changes no time stamp; a host shifts "GPSTime" here.
/// \param leverArmFile    text file with the lines "leverarm:X:Y:Z" and "misalignment:X:Y:Z", read after the
///                        database is closed and attached as (3) double each, without a unit; empty for none
/// \param progress        not used; may be null
/// \return empty on success, otherwise a message for the user
/// \errors  as the result: failures of the client, the conversion, the callback and the lever-arm file's
///          form, and exhausted memory. Raised, with all columns on the grid: std::invalid_argument or
///          std::out_of_range ("stod") for a number in the lever-arm file, and std::bad_alloc while that file
///          is read; std::bad_alloc also before the database is opened.
/// \threads as for rdbx2Z4. Sets the environment variable PROJ_LIB to the folder of the running program. A host puts
///          the old value back afterwards, so that other users of PROJ in the process find their data.
///
///     std::string failure;
///     const Riegl::ChunkCallback toWeek = [&](const auto& chunk, const auto& field, const bool& isUTC) {
///       Riegl::modifyGPSTime(failure, 2, chunk, field, isUTC); // the epoch is a Tuesday
///     };
///     failure += Riegl::pofx2nimbra("flight.pofx", *grid, 32633, toWeek, "", nullptr);
RDB2NIMBRA_EXPORT std::string
pofx2nimbra(const std::string& path, Nimbra::Grid& grid, const int& epsgCode,
            const ChunkCallback& columnCallback, const std::string& leverArmFile,
            const Torvel::StrongPtr<Torvel::LoaderProgress, Torvel::InterfaceBase>& progress);

/// Date and time system of the epoch that time stamps count from.
struct TimeBaseDate {
  bool isUTC;         ///< the time system is UTC, or the time base does not name it
  std::int32_t day;   ///< day of the month, as written
  std::int32_t month; ///< as written; 1 is January
  std::int32_t year;  ///< as written
};

/// Reads a time base: a JSON object with the keys `epoch` (RFC 3339) and `system`, as in the metadata item
/// `riegl.time_base`.
///
/// \param timeBase  JSON text, UTF-8
/// \return the date as written, without a check of ranges; for a text of another form {false, -1, -1, -1},
///         with a line on the console. An epoch with a negative zone offset is of another form.
/// \errors  std::invalid_argument or std::out_of_range ("stoi") where year, month or day is not an int
/// \threads any; writes to the console
///
///     const auto date = Riegl::parseDate(R"({"epoch": "2015-10-27T00:00:00+00:00", "system": "GPS"})");
///     std::cout << date.day << '.' << date.month << '.' << date.year << (date.isUTC ? " UTC\n" : "\n");
RDB2NIMBRA_EXPORT TimeBaseDate parseDate(const std::string& timeBase);

/// What modifyGPSTime has to know about the time stamps of a database.
struct TimeSystemInfo {
  bool isUTC = true;        ///< the time stamps are UTC
  std::int32_t weekDay = 0; ///< day of the week of the epoch; 0 is Sunday
};

/// Reads the time system of a database and the day of the week of its epoch.
///
/// \param metaData  of an open database; the library keeps no reference to it
/// \return {true, 0} for a database without a time base. A time base that parseDate refuses counts as not
///         UTC; its day is what the calendar returns for the date -1, -1, -1.
/// \errors  riegl::rdb::Error of the client, and the exceptions of parseDate
/// \threads the thread of the database; writes to the console
///
///     const Riegl::TimeSystemInfo timeSystem = Riegl::getIsUTCandWeekday(database.metaData());
RDB2NIMBRA_EXPORT TimeSystemInfo getIsUTCandWeekday(const riegl::rdb::pointcloud::MetaData& metaData);

/// Shifts a time column from seconds of the day to seconds of the week, in place. Where it shifts and the
/// time system is not UTC, it also subtracts 18.0 leap seconds. The first and the last value decide: both
/// must lie on one day; below 86400 s they count as seconds of the day, above as seconds of the week of which
/// the day must be `weekDay`.
///
/// \param error      in/out; nothing happens unless empty, receives the failure text
/// \param weekDay    day of the week of the epoch; 0 is Sunday
/// \param chunk      (n) double, seconds; stays the caller's. An empty chunk is left as it is.
/// \param fieldName  only "GPSTime" is touched
/// \param isUTC      the time system of the stamps is UTC
/// \errors  texts in `error`; the values then stay as they were. Raises nothing but std::bad_alloc.
/// \threads safe on distinct chunks
///
///     std::string failure;
///     Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase> seconds = new Torvel::Chunk<double>(100);
///     Riegl::modifyGPSTime(failure, 3, seconds, "GPSTime", true); // zeros become 259200.0, Wednesday 0:00
RDB2NIMBRA_EXPORT void modifyGPSTime(std::string& error, const int& weekDay,
                                     const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>& chunk,
                                     const std::string& fieldName, const bool& isUTC);

/// Scanner parameters for full-waveform processing that are no columns of a database.
///
/// A plain value. Strong pointers hold the arrays: copies of the record and the attributes made of it share
/// them. The four arrays `a_real` to `b_imag` describe the system wave as a sum of decaying oscillations with
/// the complex amplitude factors a = a_real + i a_imag and the complex exponents b = b_real + i b_imag. After
/// a successful read all four are valid or none is.
///
/// \threads a record belongs to one thread; the counts of the shared arrays are atomic
class AttributesForFWFProcessing {
 public:
  using GridPointer =
      Torvel::StrongPtr<Nimbra::Grid,
                        Nimbra::Ownable<Nimbra::BaseSpace, Nimbra::ChildrenProperties>::Container>;
  using FieldPointer =
      Torvel::StrongPtr<Nimbra::Field, Nimbra::Ownable<Nimbra::CreativeArrayBase,
                                                       Nimbra::CreativeArrayBaseContainerBase>::Container>;

  double group_velocity = 0;  ///< of the laser beam, m/s
  double sample_interval = 0; ///< of the waveform samples, s
  double wavelength = 0;      ///< of the laser, nm; narrowed to float wherever it is attached
  double t_ref = 0;           ///< time reference: the negated `delta_st`, in the unit of the metadata
  std::string serial_number;
  std::string device_type;
  std::string time_base;                     ///< the whole metadata item as indented JSON
  double SHOT_TIMESTAMP_HR_RESOLUTION = 0;   ///< tick of the high-resolution shot time stamp, s
  double WFM_SBL_TIME_OFFSET_RESOLUTION = 0; ///< tick of the time offset of a sample block, s
  std::string build;                         ///< build variant of the device
  double unambiguous_range = 0;              ///< width of one zone without range ambiguity, m
  Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase> a_real; ///< (n) in units of full scale
  Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase> a_imag; ///< (n) in units of full scale
  Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase> b_real; ///< (n) decay, 1/s
  Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase> b_imag; ///< (n) angular frequency, Hz
  double refl_delta = 0.1373470495519926;                             ///< step of the reflectance calculation
  Torvel::StrongPtr<Torvel::Chunk<float>, Torvel::ChunkBase> refl_tableC; ///< (n) reflectance table
  double ampl_unit = 0.01f; ///< unit of amplitudes: the single-precision 0.01, widened

  /// Describes the record as text: one scalar per line, then the first three elements of the reflectance
  /// table and a closing line. Of a shorter table the text has all elements, and no closing line. Numbers are
  /// the shortest text that reads back to the same value. Prints nothing.
  ///
  /// \errors  std::bad_alloc
  ///
  ///     std::cout << Riegl::AttributesForFWFProcessing().speak();
  RDB2NIMBRA_EXPORT std::string speak() const;

  /// Replaces the time reference, and writes a fixed warning to the console.
  ///
  /// \param value  the final `t_ref`; its sign is kept
  /// \errors  std::bad_alloc
  ///
  ///     Riegl::AttributesForFWFProcessing record;
  ///     record.overwrite_t_ref(-1.58875e-7);
  RDB2NIMBRA_EXPORT void overwrite_t_ref(const double& value);

  /// Fills the record from the metadata of a database. A record that was filled before is read anew, but
  /// `refl_delta`, `ampl_unit`, the reflectance table and the system wave keep their values where the
  /// database has none.
  ///
  /// \param pointcloud  open; the library keeps no reference to it
  /// \return empty; or "Error: Key not found" where atmosphere, waveform, serial number or time base cannot
  ///         be read: the members before it are then filled, the later ones keep their values
  /// \errors  riegl::rdb::Error of the client; std::bad_alloc. Metadata that is not a JSON object is reported
  ///          on std::cerr, everything else on the console.
  /// \threads the thread of the database
  ///
  ///     Riegl::AttributesForFWFProcessing record;
  ///     const std::string failure = record.getAttributesViaJson(database);
  RDB2NIMBRA_EXPORT std::string getAttributesViaJson(const riegl::rdb::Pointcloud& pointcloud);

  /// Attaches the record to the objects of a data set; attributes of the same names are replaced. The
  /// attributes share the arrays of the record and copy everything else.
  ///
  /// \param waveformGrid   receives the sample interval and the scanner's identity, if `waveformField` is
  ///                       valid
  /// \param pointGrid      receives the scanner's identity, the unambiguous range and, if the reflectance
  ///                       table is valid and not empty, the reflectance calculation
  /// \param waveformField  receives the sample interval and the system wave; if null, neither field nor the
  ///                       waveform grid is touched
  /// \param tRefField      receives the time reference, if `waveformField` is valid
  /// \param rdbSegment     stored on both grids
  /// \return empty; or a text that names each object that is null where it is needed. All other attributes
  ///         are set.
  /// \errors  exceptions of setAttribute; the attributes set before stay
  /// \threads the caller must be the only user of the four objects
  ///
  ///     Riegl::AttributesForFWFProcessing record;
  ///     const std::string failure = record.addAttributeToZ4File({}, grid, {}, {}, 0); // points only
  RDB2NIMBRA_EXPORT std::string addAttributeToZ4File(const GridPointer& waveformGrid,
                                                     const GridPointer& pointGrid,
                                                     const FieldPointer& waveformField,
                                                     const FieldPointer& tRefField,
                                                     const int& rdbSegment) const;
};

} // namespace Riegl
