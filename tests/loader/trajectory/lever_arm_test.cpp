// SPDX-License-Identifier: BSD-3-Clause
// Pins the grammar of the lever-arm and misalignment file, row by row.
#include "loader/trajectory/lever_arm.h"

#include "tests/support/comma_locale.h"
#include "tests/support/grid.h"
#include "tests/support/temp_dir.h"

#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using Triple = std::vector<double>;

class LeverArm : public testing::Test {
 protected:
  std::string read(const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
    return Riegl::addLeverArm_Misalignment(grid, path);
  }
  Triple leverArm() const { return support::attributeValues<double>(grid.attributes(), "LeverArm"); }
  Triple misalignment() const { return support::attributeValues<double>(grid.attributes(), "Misalignment"); }

  support::TempDir directory;
  std::string path = directory.path("lever:arm.txt");
  Nimbra::Grid grid;
};

struct Accepted {
  std::string text;
  Triple leverArm, misalignment;

  friend void PrintTo(const Accepted& test, std::ostream* stream) {
    *stream << testing::PrintToString(test.text);
  }
};

class AcceptedFile : public LeverArm, public testing::WithParamInterface<Accepted> {};

TEST_P(AcceptedFile, AttachesBothVectorsToTheGrid) {
  EXPECT_EQ(read(GetParam().text), "");
  EXPECT_EQ(leverArm(), GetParam().leverArm);
  EXPECT_EQ(misalignment(), GetParam().misalignment);
  EXPECT_THAT(support::attributeNames(grid.attributes()), ElementsAre("LeverArm", "Misalignment"));
}

const std::string rest = "misalignment:4:5:6\n";
const Triple fourFiveSix{4, 5, 6};

INSTANTIATE_TEST_SUITE_P(
    LeverArm, AcceptedFile,
    testing::Values(
        Accepted{"leverarm:0.1:0.2:0.3\nmisalignment:0.0:0.0:1.5\n", {0.1, 0.2, 0.3}, {0, 0, 1.5}},
        Accepted{"misalignment:0.0:0.0:1.5\nleverarm:0.1:0.2:0.3\n", {0.1, 0.2, 0.3}, {0, 0, 1.5}},
        Accepted{"leverarm:1:2:3\nmisalignment:4:5:6", {1, 2, 3}, fourFiveSix},
        Accepted{"leverarm:1:2:3\nleverarm:7:8:9\n" + rest, {7, 8, 9}, fourFiveSix},
        Accepted{"leverarm: 1.5 :2abc:3\n" + rest, {1.5, 2, 3}, fourFiveSix},
        Accepted{"leverarm:1:2:3\r\nmisalignment:4:5:6\r\n", {1, 2, 3}, fourFiveSix},
        Accepted{"leverarm:-1e3:+2.5E-1:.5\n" + rest, {-1000, 0.25, 0.5}, fourFiveSix},
        Accepted{"leverarm:0x10:2:3\n" + rest, {16, 2, 3}, fourFiveSix},
        // A NUL byte ends the scan of its line.
        Accepted{"leverarm:1:2:3\0:4:5\n"s + rest, {1, 2, 3}, fourFiveSix}));

struct Refused {
  std::string text, result;

  friend void PrintTo(const Refused& test, std::ostream* stream) {
    *stream << testing::PrintToString(test.text);
  }
};

class RefusedFile : public LeverArm, public testing::WithParamInterface<Refused> {};

TEST_P(RefusedFile, IsNamedAndLeavesTheAttributesAsTheyWere) {
  ASSERT_EQ(read("leverarm:1:1:1\nmisalignment:2:2:2\n"), "");
  EXPECT_EQ(read(GetParam().text), GetParam().result);
  EXPECT_THAT(leverArm(), ElementsAre(1, 1, 1));
  EXPECT_THAT(misalignment(), ElementsAre(2, 2, 2));
}

const std::string size = "pofx2nimbra::addLeverArm_Misalignment: cannot parse file. size is: ";
const std::string key = "pofx2nimbra::addLeverArm_Misalignment: cannot parse file. key is wrong";
const std::string incomplete = "pofx2nimbra::addLeverArm_Misalignment: cannot parse file";

INSTANTIATE_TEST_SUITE_P(
    LeverArm, RefusedFile,
    testing::Values(Refused{"leverarm:1:2\n" + rest, size + "3"},
                    Refused{"leverarm:1:2:3:\n" + rest, size + "5"},
                    Refused{"leverarm:1:2:3:4:5:6:7:8:9\n" + rest, size + "10"},
                    Refused{"leverarm:1:2:3\n\n" + rest, size + "1"}, Refused{"\n", size + "1"},
                    Refused{"leverarm:1:2:3\n" + rest + "\n", size + "1"}, Refused{"leverarm\n", size + "1"},
                    Refused{"leverarm:1:2:3\r\n\r\n", size + "1"}, Refused{"\0leverarm:1:2:3\n"s, size + "1"},
                    Refused{"leverarm:1\0:2:3\n"s, size + "2"}, Refused{"LeverArm:1:2:3\n" + rest, key},
                    Refused{" leverarm:1:2:3\n" + rest, key}, Refused{"leverarm :1:2:3\n" + rest, key},
                    Refused{"leverarms:1:2:3\n" + rest, key}, Refused{":1:2:3\n" + rest, key},
                    Refused{":::\n", key}, Refused{"# comment:1:2:3\n" + rest, key},
                    // The count is checked before the key, and the key before the numbers.
                    Refused{"Wrong:1:2\n", size + "3"}, Refused{"Wrong:x:y:z\n", key},
                    Refused{"leverarm:1:2:3\n", incomplete}, Refused{"misalignment:1:2:3\n", incomplete},
                    Refused{"", incomplete}));

struct Raising {
  std::string text;
  bool outOfRange;

  friend void PrintTo(const Raising& test, std::ostream* stream) {
    *stream << testing::PrintToString(test.text);
  }
};

class RaisingFile : public LeverArm, public testing::WithParamInterface<Raising> {};

TEST_P(RaisingFile, RaisesAndLeavesTheAttributesAsTheyWere) {
  ASSERT_EQ(read("leverarm:1:1:1\nmisalignment:2:2:2\n"), "");
  const auto reading = [this] { read(GetParam().text); };
  if (GetParam().outOfRange) {
    EXPECT_THAT(reading, testing::ThrowsMessage<std::out_of_range>("stod"));
  } else {
    EXPECT_THAT(reading, testing::ThrowsMessage<std::invalid_argument>("stod"));
  }
  EXPECT_THAT(leverArm(), ElementsAre(1, 1, 1));
}

INSTANTIATE_TEST_SUITE_P(LeverArm, RaisingFile,
                         testing::Values(Raising{"leverarm:x:2:3\n" + rest, false},
                                         Raising{"leverarm:1::3\n" + rest, false},
                                         Raising{"leverarm:::\n" + rest, false},
                                         Raising{"leverarm:1:2:\r\n" + rest, false},
                                         Raising{"leverarm:1:2:3\nmisalignment:4:5: \n", false},
                                         Raising{"leverarm:1e999:2:3\n" + rest, true},
                                         Raising{"leverarm:1:2:-1e999\n" + rest, true},
                                         Raising{"leverarm:1e-999:2:3\n" + rest, true}));

TEST_F(LeverArm, WithoutAPathIsNoFailure) {
  EXPECT_EQ(Riegl::addLeverArm_Misalignment(grid, ""), "");
  EXPECT_TRUE(grid.attributes().empty());
}

TEST_F(LeverArm, OfAMissingFileIsNamedWithItsPath) {
  EXPECT_EQ(Riegl::addLeverArm_Misalignment(grid, path), "pofx2nimbra:Error opening leverarm file: " + path);
}

TEST_F(LeverArm, OfAFolderIsAnEmptyFile) {
  EXPECT_EQ(Riegl::addLeverArm_Misalignment(grid, directory.root().string()), incomplete);
}

TEST_F(LeverArm, HasNumbersWithAPointWhateverTheLocaleOfTheHost) {
  const support::CommaLocale host;
  ASSERT_TRUE(host.isSet()) << "the C library takes no locale with a decimal comma";
  EXPECT_EQ(read("leverarm:0.1:0,2:0.3\nmisalignment:4:5:1.5\n"), "");
  EXPECT_THAT(leverArm(), ElementsAre(0.1, 0, 0.3));
  EXPECT_THAT(misalignment(), ElementsAre(4, 5, 1.5));
  EXPECT_EQ(std::strtod("0,5", nullptr), 0.5); // the locale of the host is restored
}

TEST_F(LeverArm, TakesTheLongestLines) {
  EXPECT_EQ(read("leverarm:" + std::string(1000000, ' ') + "1:2:3\n" + rest), "");
  EXPECT_EQ(read("leverarm" + std::string(1000000, ':')), size + "1000001");
}

TEST_F(LeverArm, OfASecondLoadReplacesTheFirst) {
  ASSERT_EQ(read("leverarm:1:1:1\nmisalignment:2:2:2\n"), "");
  ASSERT_EQ(read("leverarm:7:8:9\n" + rest), "");
  EXPECT_THAT(leverArm(), ElementsAre(7, 8, 9));
  EXPECT_EQ(grid.attributes().size(), 2U);
}

TEST_F(LeverArm, CountsTheBytesOfItsChunks) {
  const std::int64_t before = Torvel::ChunkBase::TotalMemsize;
  ASSERT_EQ(read("leverarm:1:1:1\nleverarm:3:3:3\nmisalignment:2:2:2\n"), "");
  EXPECT_EQ(Torvel::ChunkBase::TotalMemsize - before, 48);
}

} // namespace
