// SPDX-License-Identifier: BSD-3-Clause
// Damage that is not possible is refused with kind and text; damage that is done is found by verify.
#include "container/testing/damage.h"

#include "container/read/verify.h"
#include "tests/container/database_file.h"

#include <ostream>

namespace {

using namespace containertest;
using container::DamageRequest;
using container::ErrorKind;

/// A change of the sample that is refused.
struct Refused {
  const char* name;
  void (*change)(DamageRequest& request);
  ErrorKind kind;
  const char* details;
};

void PrintTo(const Refused& row, std::ostream* out) {
  *out << row.name;
}

const Refused refused[] = {
    {"NoChange", [](auto&) {}, ErrorKind::wrongUse, "scan.rdbx: expected at least one change, found none"},
    {"BlockWithoutAttribute", [](auto& request) { request.dropBlock = true; }, ErrorKind::wrongUse,
     "scan.rdbx: expected the name of an attribute for a change of block or type, found none"},
    {"OtherTable", [](auto& request) { request.dropTable = "sqlite_schema"; }, ErrorKind::wrongUse,
     "scan.rdbx: expected table database, attribute, block, metadata, block_index or extent, found "
     "\"sqlite_schema\""},
    {"NoFile",
     [](auto& request) {
       request.file += "x";
       request.records = 1;
     },
     ErrorKind::cannotOpen, "scan.rdbxx: expected a regular file, found none"},
    {"MissingBlock",
     [](auto& request) {
       request.attribute = "riegl.class";
       request.block = 3;
       request.dropBlock = true;
     },
     ErrorKind::damaged, "scan.rdbx: expected block 3 of attribute \"riegl.class\", found none"},
    {"ByteBehindTheBlock",
     [](auto& request) {
       request.attribute = "riegl.class";
       request.flipByte = 4;
     },
     ErrorKind::damaged, "scan.rdbx: expected a block of more than 4 bytes, found 4"},
    {"MissingAttribute",
     [](auto& request) {
       request.attribute = "a";
       request.storedType = "int8";
     },
     ErrorKind::damaged, "scan.rdbx: expected attribute \"a\", found none"},
};

class Damaging : public testing::Test {
 protected:
  void SetUp() override {
    request.file = directory.path("scan.rdbx");
    writeSample(request.file);
  }
  std::uint64_t findings() const {
    return container::verify(request.file, [](const auto&, const auto&) {}).findings;
  }
  support::TempDir directory;
  DamageRequest request;
};

class RefusedDamage : public Damaging, public testing::WithParamInterface<Refused> {};

TEST_P(RefusedDamage, NamesTheFileWhatWasExpectedAndWhatWasFound) {
  GetParam().change(request);
  EXPECT_EQ(errorOf(directory, [this] { container::damage(request); }),
            std::string("the database cannot be damaged so (") + GetParam().details + ")");
}

TEST_P(RefusedDamage, HasItsKindAndLeavesTheFileSound) {
  const std::string file = request.file;
  GetParam().change(request);
  try {
    container::damage(request);
    FAIL() << "damaged";
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), GetParam().kind);
  }
  request.file = file;
  EXPECT_EQ(findings(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Of, RefusedDamage, testing::ValuesIn(refused),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Damaging, FlippedByteIsFoundByTheCheck) {
  request.attribute = "riegl.class";
  request.flipByte = 3;
  container::damage(request);
  EXPECT_EQ(findings(), 1U);
}

TEST_F(Damaging, FileThatIsNoDatabaseCannotBeWritten) {
  writeBytes(request.file, std::vector<char>(1000, 'x'));
  request.records = 1;
  EXPECT_EQ(
      errorOf(directory, [this] { container::damage(request); }),
      "the database cannot be damaged so (scan.rdbx: expected a database to damage, found: file is not a "
      "database)");
}

} // namespace
