// SPDX-License-Identifier: BSD-3-Clause
// The described extra bytes of LAS points as attributes.
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

class LasExtraBytes : public testing::Test {
 protected:
  LasExtraBytes() { point.extra = std::string("\x01\x02\x03\x04\x05\x06\x07\x08", 8); }
  DatabaseRows importedWith(const std::vector<support::LasExtraField>& fields) {
    const LasFile file = LasFile(4, 6).withExtraFields(fields).with(point);
    run = support::runTool({"import", file.writeTo(folder.path("in.las")), "-o", folder.path("out.rdbx")});
    EXPECT_EQ(run.status, 0) << run.err;
    return DatabaseRows(folder.path("out.rdbx"));
  }
  support::TempDir folder;
  LasPoint point;
  support::Run run;
};

TEST_F(LasExtraBytes, EveryPlainTypeHasItsStoredType) {
  const char* types[] = {"uint8", "int8",   "uint16", "int16",   "uint32",
                         "int32", "uint64", "int64",  "float32", "float64"};
  for (unsigned type = 1; type <= 10; ++type) {
    EXPECT_EQ(importedWith({{"value", type, 0, {}, {}}}).typeOf("las.value"),
              types[type - 1] + std::string(" x 1"));
  }
}

TEST_F(LasExtraBytes, FieldsFollowOneAnother) {
  const DatabaseRows rows =
      importedWith({{"first", 1, 0, {}, {}}, {"second", 3, 0, {}, {}}, {"third", 5, 0, {}, {}}});
  EXPECT_THAT(rows.column("las.first"), ElementsAre(1));
  EXPECT_THAT(rows.column("las.second"), ElementsAre(0x0302));
  EXPECT_THAT(rows.column("las.third"), ElementsAre(0x07060504));
  EXPECT_THAT(run.err, HasSubstr("1 bytes of each point record without a description, skipped"));
}

TEST_F(LasExtraBytes, ScaleAndOffsetApplyWhereTheyAreFlagged) {
  const std::array<double, 3> scale = {0.5, 0, 0};
  const std::array<double, 3> offset = {100, 0, 0};
  EXPECT_THAT(importedWith({{"both", 1, 24, scale, offset}}).column("las.both"), ElementsAre(100.5));
  EXPECT_THAT(importedWith({{"scaled", 1, 8, scale, offset}}).column("las.scaled"), ElementsAre(0.5));
  EXPECT_THAT(importedWith({{"shifted", 1, 16, scale, offset}}).column("las.shifted"), ElementsAre(101));
  EXPECT_THAT(importedWith({{"plain", 1, 0, scale, offset}}).column("las.plain"), ElementsAre(1));
}

TEST_F(LasExtraBytes, OldTypesOfSeveralValuesAreVectors) {
  const DatabaseRows rows = importedWith({{"pair", 11, 0, {}, {}}, {"triple", 23, 0, {}, {}}});
  EXPECT_THAT(rows.column("las.pair"), ElementsAre(1, 2));
  EXPECT_THAT(rows.column("las.triple"), ElementsAre(0x0403, 0x0605, 0x0807));
}

TEST_F(LasExtraBytes, UnlikeCharactersOfANameAreReplaced) {
  EXPECT_TRUE(importedWith({{"a b\xC3\xA4", 1, 0, {}, {}}}).has("las.a_b__"));
}

/// A description that becomes no attribute, and the text that reports it.
struct Left {
  const char* name;
  support::LasExtraField field;
  const char* text;
};

void PrintTo(const Left& row, std::ostream* out) {
  *out << row.name;
}

class LasExtraLeft : public LasExtraBytes, public testing::WithParamInterface<Left> {};

TEST_P(LasExtraLeft, IsReportedAndTheRestIsImported) {
  const DatabaseRows rows = importedWith({GetParam().field});
  EXPECT_THAT(run.err, HasSubstr(GetParam().text));
  EXPECT_EQ(rows.names().size(), 8U);
  EXPECT_EQ(rows.records(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, LasExtraLeft,
    testing::Values(
        Left{"Opaque", {"raw", 0, 5, {}, {}}, "extra bytes \"raw\": 5 bytes without a type, skipped"},
        Left{"UnknownType", {"odd", 31, 0, {}, {}}, "extra bytes \"odd\": unknown type 31"},
        Left{"TooLong", {"long", 30, 0, {}, {}}, "extra bytes \"long\": reach past the end"},
        Left{"Unnamed", {"", 1, 0, {}, {}}, "no unique name"},
        Left{"UnequalScales", {"skewed", 11, 8, {1, 2, 0}, {}}, "no single scale and offset, skipped"},
        Left{"ScaleZero", {"flat", 1, 8, {0, 0, 0}, {}}, "no single scale and offset, skipped"}),
    [](const auto& left) { return std::string(left.param.name); });

TEST_F(LasExtraBytes, ASecondFieldOfANameIsLeft) {
  const DatabaseRows rows = importedWith({{"twin", 1, 0, {}, {}}, {"twin", 1, 0, {}, {}}});
  EXPECT_THAT(rows.column("las.twin"), ElementsAre(1));
  EXPECT_THAT(run.err, HasSubstr("extra bytes \"twin\": no unique name"));
}

} // namespace
