// SPDX-License-Identifier: BSD-3-Clause
// LAS files that are refused, with the text for each.
#include "tests/apps/rdbtool/las_file.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/temp_dir.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>

namespace {

using support::LasFile;
using support::LasPoint;

/// A valid file of three points with one change.
struct Refusal {
  const char* name;
  std::function<std::string()> bytes;
  const char* text; // behind "rdbtool: <path>: "
};

void PrintTo(const Refusal& row, std::ostream* out) {
  *out << row.name;
}

std::string changed(unsigned minor, unsigned format, const std::function<void(LasFile&)>& change) {
  LasFile file(minor, format);
  file.with(LasPoint()).with(LasPoint()).with(LasPoint());
  change(file);
  return file.bytes();
}

std::string cut(unsigned minor, unsigned format, std::size_t left) {
  return changed(minor, format, [](LasFile&) {}).substr(0, left);
}

const Refusal refusals[] = {
    {"Signature", [] { return changed(2, 0, [](LasFile& f) { f.signature = "LASX"; }); },
     "expected the signature LASF of a LAS file, found other bytes"},
    {"Empty", [] { return std::string(); }, "expected the signature LASF of a LAS file, found other bytes"},
    {"CutInHeader", [] { return cut(2, 0, 226); },
     "expected a LAS header of at least 227 bytes, found a file of 226"},
    {"CutInLongHeader", [] { return cut(4, 6, 374); },
     "expected a header of at least 375 bytes for LAS 1.4, found 374"},
    {"MajorVersion", [] { return changed(2, 0, [](LasFile& f) { f.major = 2; }); },
     "expected LAS version 1.0 to 1.4, found 2.2"},
    {"MinorVersion", [] { return changed(2, 0, [](LasFile& f) { f.minor = 5; }); },
     "expected LAS version 1.0 to 1.4, found 1.5"},
    {"HeaderSize", [] { return changed(2, 0, [](LasFile& f) { f.headerBytesTooMany = -1; }); },
     "expected a header of at least 227 bytes for LAS 1.2, found 226"},
    {"Compressed", [] { return changed(2, 0, [](LasFile& f) { f.formatBits = 0x80; }); },
     "expected uncompressed point records, found compressed ones (format byte 128); decompress the file "
     "first"},
    {"CompressionRecord",
     [] { return changed(2, 0, [](LasFile& f) { f.withRecord("laszip encoded", 22204, "x"); }); },
     "expected uncompressed point records, found the variable length record of a compressor; decompress the "
     "file first"},
    {"UnknownFormat", [] { return changed(2, 0, [](LasFile& f) { f.formatBits = 11; }); },
     "expected point format 0 to 10, found 11"},
    {"RecordTooShort", [] { return changed(2, 3, [](LasFile& f) { f.recordBytesTooMany = -1; }); },
     "expected point records of at least 34 bytes for format 3, found 33"},
    {"PointOffsetInHeader", [] { return changed(2, 0, [](LasFile& f) { f.pointOffsetTooMuch = -1; }); },
     "expected the points between 227 and 287, found their offset to be 226"},
    {"PointOffsetPastTheEnd", [] { return changed(2, 0, [](LasFile& f) { f.pointOffsetTooMuch = 61; }); },
     "expected the points between 227 and 287, found their offset to be 288"},
    {"TooManyVariableRecords",
     [] {
       return changed(2, 0, [](LasFile& f) {
         f.withRecord("someone", 1, "abc");
         f.recordsTooMany = 1;
       });
     },
     "expected 2 variable length records before the points at 284, found 1 that fit"},
    {"OnePointShort", [] { return cut(2, 0, 227 + 59); }, "expected 3 points as in the header, found 2"},
    {"OnePointTooManyInTheLongCount", [] { return changed(4, 6, [](LasFile& f) { f.pointsTooMany = 1; }); },
     "expected 4 points as in the header, found 3"},
    {"CountsDiffer", [] { return changed(4, 3, [](LasFile& f) { f.oldCountTooMany = 2; }); },
     "expected one point count, found 5 in the 32-bit field of the header and 3 in the 64-bit field"},
    {"ScaleZero", [] { return changed(2, 0, [](LasFile& f) { f.scale[1] = 0; }); },
     "expected a finite scale other than 0 and a finite offset on axis Y, found 0 and 0"},
    {"OffsetNoNumber",
     [] { return changed(2, 0, [](LasFile& f) { f.offset[2] = std::numeric_limits<double>::quiet_NaN(); }); },
     "expected a finite scale other than 0 and a finite offset on axis Z, found 0.01 and nan"},
    {"SmallScaleAndNoOffset",
     [] {
       return changed(2, 0, [](LasFile& f) {
         f.scale[0] = 1e-9;
         f.offset[0] = std::numeric_limits<double>::infinity();
       });
     },
     "expected a finite scale other than 0 and a finite offset on axis X, found 1e-09 and inf"},
};

class LasRefusal : public testing::TestWithParam<Refusal> {
 protected:
  support::TempDir folder;
};

TEST_P(LasRefusal, EndsWithStatusOneAndNamesTheFault) {
  const std::string path = folder.path("in.las");
  std::ofstream(path, std::ios::binary) << GetParam().bytes();
  const support::Run run = support::runTool({"import", path, "-o", folder.path("out.rdbx")});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "rdbtool: " + path + ": " + GetParam().text + "\n");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.root()), {}), 1) << "something was left";
}

INSTANTIATE_TEST_SUITE_P(Faults, LasRefusal, testing::ValuesIn(refusals),
                         [](const auto& fault) { return std::string(fault.param.name); });

TEST(LasTruncation, AFileCutAnywhereIsRefusedAndNeverCrashes) {
  const support::TempDir folder;
  const std::string whole = changed(4, 7, [](LasFile& f) { f.withRecord("someone", 1, "abc"); });
  for (std::size_t left = 0; left < whole.size(); left += 7) {
    std::ofstream(folder.path("in.las"), std::ios::binary) << whole.substr(0, left);
    EXPECT_EQ(support::runTool({"import", folder.path("in.las"), "-o", folder.path("out.rdbx")}).status, 1)
        << left << " bytes";
  }
}

} // namespace
