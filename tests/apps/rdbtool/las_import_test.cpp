// SPDX-License-Identifier: BSD-3-Clause
// The attributes of imported LAS points, for every point format and version.
#include "tests/apps/rdbtool/database_rows.h"
#include "tests/apps/rdbtool/las_file.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>

namespace {

using support::DatabaseRows;
using support::LasFile;
using support::LasPoint;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// The columns of every file, in order.
const std::vector<std::string> always = {"riegl.xyz",          "riegl.amplitude", "riegl.target_index",
                                         "riegl.target_count", "riegl.class",     "riegl.scan_angle",
                                         "riegl.source_index"};

LasPoint firstPoint() {
  LasPoint point;
  point.x = -12345;
  point.y = 678901;
  point.z = 2147483647;
  point.intensity = 65535;
  point.returnNumber = 2;
  point.returnCount = 5;
  point.classification = 9;
  point.scanAngle = -15;
  point.source = 40001;
  point.gpsTime = 259210.25;
  point.rgb = {65535, 256, 255};
  return point;
}

LasPoint secondPoint() {
  LasPoint point;
  point.classification = 31;
  point.scanAngle = 90;
  point.gpsTime = 259211.5;
  point.rgb = {0x8000, 0x1234, 0};
  return point;
}

/// A format, a version, and whether the file then has stamps and colours.
struct Form {
  unsigned format;
  unsigned minor;
  bool stamped;
  bool coloured;
};

void PrintTo(const Form& row, std::ostream* out) {
  *out << row.format << " of 1." << row.minor;
}

class LasForm : public testing::TestWithParam<Form> {
 protected:
  LasFile twoPoints() const {
    LasFile file(GetParam().minor, GetParam().format);
    file.with(firstPoint()).with(secondPoint());
    file.offset = {1000, -2000, 0.5};
    return file;
  }
  DatabaseRows imported(const LasFile& file) {
    run = support::runTool({"import", file.writeTo(folder.path("in.las")), "-o", folder.path("out.rdbx")});
    EXPECT_EQ(run.status, 0) << run.err;
    return DatabaseRows(folder.path("out.rdbx"));
  }
  support::TempDir folder;
  support::Run run;
};

TEST_P(LasForm, PositionsAreScaledAndOffset) {
  const DatabaseRows rows = imported(twoPoints());
  EXPECT_THAT(rows.column("riegl.xyz"), ElementsAre(-12345 * 0.01 + 1000, 678901 * 0.01 - 2000,
                                                    2147483647 * 0.01 + 0.5, 1000, -2000, 0.5));
  EXPECT_EQ(rows.typeOf("riegl.xyz"), "float64 x 3");
}

TEST_P(LasForm, PlainFieldsAreTakenOver) {
  const DatabaseRows rows = imported(twoPoints());
  EXPECT_THAT(rows.column("riegl.amplitude"), ElementsAre(65535, 0));
  EXPECT_THAT(rows.column("riegl.target_index"), ElementsAre(2, 1));
  EXPECT_THAT(rows.column("riegl.target_count"), ElementsAre(5, 1));
  EXPECT_THAT(rows.column("riegl.class"), ElementsAre(9, 31));
  EXPECT_THAT(rows.column("riegl.source_index"), ElementsAre(40001, 0));
}

TEST_P(LasForm, ScanAngleIsInDegrees) {
  const double degreesPerStep = GetParam().format < 6 ? 1 : 0.006;
  EXPECT_THAT(imported(twoPoints()).column("riegl.scan_angle"),
              ElementsAre(-15 * degreesPerStep, 90 * degreesPerStep));
}

TEST_P(LasForm, StampsAndColoursStandWhereTheFormatHasThem) {
  const DatabaseRows rows = imported(twoPoints());
  std::size_t columns = always.size();
  if (GetParam().stamped) {
    EXPECT_THAT(rows.column("riegl.timestamp"), ElementsAre(259210.25, 259211.5));
    ++columns;
  }
  if (GetParam().coloured) {
    EXPECT_THAT(rows.column("riegl.rgba"), ElementsAre(255, 1, 0, 255, 128, 0x12, 0, 255));
    EXPECT_EQ(rows.typeOf("riegl.direction_medium"), "int8 x 3");
    columns += 2;
  }
  EXPECT_EQ(rows.names().size(), columns);
  EXPECT_EQ(rows.item("riegl.time_base").empty(), !GetParam().stamped);
}

TEST_P(LasForm, ClassificationFlagsAreNoPartOfTheClass) {
  LasPoint point = firstPoint();
  point.flags = 7;
  LasFile file(GetParam().minor, GetParam().format);
  EXPECT_THAT(imported(file.with(point)).column("riegl.class"), ElementsAre(9));
}

TEST_P(LasForm, PartsThatAreNotImportedAreReported) {
  const unsigned format = GetParam().format;
  imported(twoPoints());
  const bool waveform = format == 4 || format == 5 || format == 9 || format == 10;
  EXPECT_EQ(run.err.find("waveform packets of point format") != std::string::npos, waveform) << run.err;
  EXPECT_EQ(run.err.find("near infrared") != std::string::npos, format == 8 || format == 10) << run.err;
  EXPECT_EQ(run.err.empty(), !waveform && format != 8);
}

TEST_P(LasForm, AFileWithoutPointsGivesTheColumnsAndNoRecord) {
  const DatabaseRows rows = imported(LasFile(GetParam().minor, GetParam().format));
  EXPECT_EQ(rows.records(), 0U);
  for (const std::string& name : always) {
    EXPECT_TRUE(rows.has(name)) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Forms, LasForm,
    testing::Values(Form{0, 0, false, false}, Form{1, 0, true, false}, Form{0, 1, false, false},
                    Form{1, 1, true, false}, Form{0, 2, false, false}, Form{1, 2, true, false},
                    Form{2, 2, false, true}, Form{3, 2, true, true}, Form{3, 3, true, true},
                    Form{4, 3, true, false}, Form{5, 3, true, true}, Form{0, 4, false, false},
                    Form{1, 4, true, false}, Form{2, 4, false, true}, Form{3, 4, true, true},
                    Form{4, 4, true, false}, Form{5, 4, true, true}, Form{6, 4, true, false},
                    Form{7, 4, true, true}, Form{8, 4, true, true}, Form{9, 4, true, false},
                    Form{10, 4, true, true}),
    [](const auto& form) {
      return "Format" + std::to_string(form.param.format) + "Version1_" + std::to_string(form.param.minor);
    });

class LasImport : public testing::Test {
 protected:
  DatabaseRows imported(const LasFile& file) {
    const support::Run run =
        support::runTool({"import", file.writeTo(folder.path("in.las")), "-o", folder.path("out.rdbx")});
    EXPECT_EQ(run.status, 0) << run.err;
    return DatabaseRows(folder.path("out.rdbx"));
  }
  support::TempDir folder;
};

TEST_F(LasImport, ExtendedFormatsKeepWholeClassesAndFifteenReturns) {
  LasPoint point;
  point.classification = 200;
  point.returnNumber = 14;
  point.returnCount = 15;
  const DatabaseRows rows = imported(LasFile(4, 6).with(point));
  EXPECT_THAT(rows.column("riegl.class"), ElementsAre(200));
  EXPECT_THAT(rows.column("riegl.target_index"), ElementsAre(14));
  EXPECT_THAT(rows.column("riegl.target_count"), ElementsAre(15));
}

TEST_F(LasImport, ColoursThatNeverExceedEightBitsAreTakenAsTheyStand) {
  LasPoint point;
  point.rgb = {255, 1, 128};
  EXPECT_THAT(imported(LasFile(2, 2).with(point)).column("riegl.rgba"), ElementsAre(255, 1, 128, 255));
}

TEST_F(LasImport, OneWideColourMakesTheWholeFileWide) {
  LasPoint narrow;
  narrow.rgb = {255, 255, 255};
  LasPoint wide;
  wide.rgb = {0, 0, 256};
  EXPECT_THAT(imported(LasFile(2, 2).with(narrow).with(wide)).column("riegl.rgba"),
              ElementsAre(0, 0, 0, 255, 0, 0, 1, 255));
}

TEST_F(LasImport, TheCoordinateSystemBecomesTheGeoTag) {
  const std::string keys("\1\0\1\0\0\0\1\0\0\14\0\0\1\0\x79\x7F", 16); // one key: 3072, in place, 32633
  const LasFile file = LasFile(4, 6)
                           .withRecord("LASF_Projection", 34735, keys)
                           .withRecord("LASF_Projection", 2112, std::string("PROJCS[]\0", 9));
  EXPECT_EQ(imported(file).item("riegl.geo_tag"), R"({"crs":{"epsg":32633,"wkt":"PROJCS[]"}})");
}

TEST_F(LasImport, MoreRecordsThanOneBatchKeepTheirOrder) {
  LasFile file(2, 1);
  for (int index = 0; index < 70001; ++index) {
    LasPoint point;
    point.x = index;
    file.with(point);
  }
  file.scale = {1, 1, 1};
  const std::vector<double> places = imported(file).column("riegl.xyz");
  for (std::size_t index = 0; index < 70001; ++index) {
    ASSERT_EQ(places[3 * index], static_cast<double>(index));
  }
}

} // namespace
