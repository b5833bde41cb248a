// SPDX-License-Identifier: BSD-3-Clause
// Every flaw of the broken client is reported as the promises that it breaks, and every promise can be broken.
// Long because of the table of flaws.
#include "conformance/client.h"
#include "conformance/promise.h"
#include "tests/support/temp_dir.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <ostream>
#include <set>

namespace conformance {
namespace {

using Names = std::set<std::string>;

Names allNames() {
  Names names;
  for (const Promise& promise : promises()) {
    names.insert(promise.name);
  }
  return names;
}

/// The promises that the client with this flaw breaks, of those that are `checked`.
Names brokenBy(const std::string& flaw, const Names& checked = allNames()) {
  const support::TempDir folder;
  broken::flaw() = flaw;
  Names names;
  for (const Promise& promise : promises()) {
    std::filesystem::create_directory(folder.path(promise.name));
    if (checked.count(promise.name) != 0 && !checkApart(promise, folder.path(promise.name)).kept) {
      names.insert(promise.name);
    }
  }
  broken::flaw() = "";
  return names;
}

struct Flaw {
  std::string name;
  Names promises;
  /// A flaw that uses memory out of bounds may break any other promise too, so only its own promises are checked.
  bool certainForItsPromisesOnly = false;

  friend void PrintTo(const Flaw& flaw, std::ostream* stream) { *stream << flaw.name; }
};

const std::vector<Flaw> flaws{
    {"absentBindIsIgnored", {"ErrorTextsAreNeverNull", "BindOfAnAbsentAttributeRaisesError"}},
    {"absentItemRaises", {"AbsentMetadataGivesTheFallback"}},
    {"beginningOfANameExists", {"AttributesAreThereByNameOnly"}},
    {"bindStartsAgain",
     {"FailedOpenLeavesObjectsThatCanBeDestroyed", "PathIsUtf8", "SameFileOpensTwice",
      "CatalogueAnswersDuringAQuery", "NextBehindTheEndStaysZero", "NextNeverReturnsMoreThanAsked",
      "QueryWithoutBindCountsOn", "ManyColumnsAreFilledTogether", "EveryBlockGoesToTheBufferBoundLast",
      "PositionSurvivesRebinding", "ObjectsEndInTheOrderOfALoad", "ObjectsEndInAnyOrder",
      "SecondDatabaseInAnotherThread"}},
    {"bindWrites",
     {"DatabaseWithoutRecordsEndsAtOnce", "NextBehindTheEndStaysZero", "TwoQueriesStandSideBySide",
      "SecondBindLeavesTheFirstBufferAlone", "BindAloneWritesNothing", "EndOfAQueryLeavesBuffersAlone"}},
    {"boundBufferIsContinued",
     {"SameFileOpensTwice", "LastBlockMayHoldOneRecord", "BufferBoundOnceIsFilledFromItsStartEachTime",
      "TwoQueriesStandSideBySide", "PositionSurvivesRebinding"}},
    {"columnsEndAt64", {"ManyColumnsAreFilledTogether"}},
    {"componentsAreApart",
     {"NextNeverReturnsMoreThanAsked", "NothingIsWrittenBehindTheLastRecord",
      "ColumnsOfOtherLengthsKeepTheirRecordsTogether", "ManyColumnsAreFilledTogether",
      "TwoQueriesStandSideBySide", "PositionSurvivesRebinding", "EveryRequestedTypeIsDelivered"}},
    {"contextNeedsSettings", allNames()},
    {"copiesHaveAPositionOfTheirOwn", {"CopiesOfAQueryShareThePosition"}},
    {"countIsIgnored",
     {"FailedOpenLeavesObjectsThatCanBeDestroyed", "SameFileOpensTwice", "CatalogueAnswersDuringAQuery",
      "LastBlockMayHoldOneRecord", "NextNeverReturnsMoreThanAsked", "NextReturnsAsManyAsAsked",
      "QueryWithoutBindCountsOn", "CopiesOfAQueryShareThePosition",
      "BufferBoundOnceIsFilledFromItsStartEachTime", "ManyColumnsAreFilledTogether",
      "TwoQueriesStandSideBySide", "EveryBlockGoesToTheBufferBoundLast", "PositionSurvivesRebinding",
      "ObjectsEndInTheOrderOfALoad", "ObjectsEndInAnyOrder", "SecondDatabaseInAnotherThread"}},
    {"detailsIsEmpty", {"PathThatDoesNotExistRaisesErrorWithTexts"}},
    {"detailsIsNull", {"PathThatDoesNotExistRaisesErrorWithTexts", "ErrorTextsAreNeverNull"}},
    {"emptyDatabaseRaises", {"DatabaseWithoutRecordsEndsAtOnce"}},
    {"emptyItemIsAbsent", {"MetadataIsTextByName"}},
    {"endAfterAFailedOpenCrashes",
     {"PathThatDoesNotExistRaisesErrorWithTexts", "ErrorIsAStandardException",
      "FileThatIsNoDatabaseRaisesError", "ErrorTextsAreNeverNull",
      "FailedOpenLeavesObjectsThatCanBeDestroyed"}},
    {"endClearsBuffers", {"EndOfAQueryLeavesBuffersAlone"}, true},
    {"endInTheMiddleCrashes",
     {"CatalogueAnswersDuringAQuery", "TwoQueriesStandSideBySide", "ObjectsEndInTheOrderOfALoad",
      "ObjectsEndInAnyOrder"}},
    {"endWrites", {"DatabaseWithoutRecordsEndsAtOnce", "NextBehindTheEndStaysZero"}},
    {"endsWithoutBuffers",
     {"NextReturnsAsManyAsAsked", "QueryWithoutBindCountsOn", "CopiesOfAQueryShareThePosition"}},
    {"everyFileOpens", {"FileThatIsNoDatabaseRaisesError", "ErrorTextsAreNeverNull"}},
    {"everyPathOpens",
     {"PathThatDoesNotExistRaisesErrorWithTexts", "ErrorIsAStandardException",
      "FileThatIsNoDatabaseRaisesError", "ErrorTextsAreNeverNull",
      "FailedOpenLeavesObjectsThatCanBeDestroyed"}},
    {"filesOpenOnce", {"SameFileOpensTwice"}},
    {"firstBindStays",
     {"FailedOpenLeavesObjectsThatCanBeDestroyed", "SameFileOpensTwice", "NextNeverReturnsMoreThanAsked",
      "ManyColumnsAreFilledTogether", "EveryBlockGoesToTheBufferBoundLast",
      "SecondBindLeavesTheFirstBufferAlone", "PositionSurvivesRebinding", "ObjectsEndInTheOrderOfALoad",
      "ObjectsEndInAnyOrder", "SecondDatabaseInAnotherThread"}},
    {"firstBufferIsWrittenToo", {"SecondBindLeavesTheFirstBufferAlone"}, true},
    {"float32IsRefused",
     {"NothingIsWrittenBehindTheLastRecord", "EveryBlockGoesToTheBufferBoundLast",
      "EveryRequestedTypeIsDelivered", "FloatsArriveAsTheNearestValue"}},
    {"floatsPassAsFloat32", {"FloatsArriveAsTheNearestValue"}},
    {"fractionsAreCut", {"FractionsAreRoundedHalfToEven"}},
    {"fullBlockIsReadAgain",
     {"PathIsUtf8", "FullLastBlockIsFollowedByZero", "NextBehindTheEndStaysZero",
      "EveryBlockGoesToTheBufferBoundLast", "SecondDatabaseInAnotherThread"}},
    {"halfOfTheCountIsRead",
     {"SameFileOpensTwice",
      "CatalogueAnswersDuringAQuery",
      "FullLastBlockIsFollowedByZero",
      "LastBlockMayHoldOneRecord",
      "NextReturnsAsManyAsAsked",
      "QueryWithoutBindCountsOn",
      "CopiesOfAQueryShareThePosition",
      "BufferBoundOnceIsFilledFromItsStartEachTime",
      "ColumnsOfOtherLengthsKeepTheirRecordsTogether",
      "ManyColumnsAreFilledTogether",
      "TwoQueriesStandSideBySide",
      "EveryBlockGoesToTheBufferBoundLast",
      "SecondBindLeavesTheFirstBufferAlone",
      "PositionSurvivesRebinding",
      "BindKeepsNoReferenceToTheName",
      "EveryRequestedTypeIsDelivered",
      "IntegersOutsideTheTypeSaturate",
      "FractionsAreRoundedHalfToEven",
      "NotANumberBecomesZeroInIntegers",
      "LargeIntegersPassExactly",
      "FloatsArriveAsTheNearestValue",
      "ObjectsEndInTheOrderOfALoad",
      "ObjectsEndInAnyOrder",
      "EndOfAQueryLeavesBuffersAlone"}},
    {"integersPassAsFloat64", {"LargeIntegersPassExactly"}},
    {"integersWrap", {"IntegersOutsideTheTypeSaturate", "LargeIntegersPassExactly"}},
    {"itemsEndAt64K", {"LongMetadataComesWhole"}},
    {"lengthsAreNotChecked", {"BindOfAnotherLengthThanTheNameStandsForRaisesError"}},
    {"missingPathRaisesAnotherException",
     {"PathThatDoesNotExistRaisesErrorWithTexts", "FileThatIsNoDatabaseRaisesError", "ErrorTextsAreNeverNull",
      "FailedOpenLeavesObjectsThatCanBeDestroyed"}},
    {"nameIsReadByNext", {"BindKeepsNoReferenceToTheName"}, true},
    {"notANumberIsTheMost", {"NotANumberBecomesZeroInIntegers"}},
    {"oneByteTooMuch",
     {"FailedOpenLeavesObjectsThatCanBeDestroyed", "PathIsUtf8", "SameFileOpensTwice",
      "FullLastBlockIsFollowedByZero", "LastBlockMayHoldOneRecord", "NextBehindTheEndStaysZero",
      "NextNeverReturnsMoreThanAsked", "BufferBoundOnceIsFilledFromItsStartEachTime",
      "NothingIsWrittenBehindTheLastRecord", "ManyColumnsAreFilledTogether", "ObjectsEndInTheOrderOfALoad",
      "ObjectsEndInAnyOrder", "SecondDatabaseInAnotherThread"}},
    {"oneThreadOnly", {"SecondDatabaseInAnotherThread"}},
    {"onlyAsciiPathsOpen", {"PathIsUtf8"}},
    {"onlyKnownNamesExist", {"AttributesAreThereByNameOnly"}},
    {"queriesShareAPosition", {"TwoQueriesStandSideBySide"}},
    {"queryNeedsItsDatabase", {"ObjectsEndInAnyOrder"}},
    {"questionStartsAgain", {"CatalogueAnswersDuringAQuery"}},
    {"shortBlocksAreFilledUp",
     {"FailedOpenLeavesObjectsThatCanBeDestroyed", "SameFileOpensTwice", "LastBlockMayHoldOneRecord",
      "NextNeverReturnsMoreThanAsked", "BufferBoundOnceIsFilledFromItsStartEachTime",
      "NothingIsWrittenBehindTheLastRecord", "ManyColumnsAreFilledTogether", "ObjectsEndInTheOrderOfALoad",
      "ObjectsEndInAnyOrder"}},
    {"singleLastRecordIsLost", {"LastBlockMayHoldOneRecord", "NextReturnsAsManyAsAsked"}},
    {"startsAgainBehindTheEnd", {"NextBehindTheEndStaysZero"}},
    {"whatIsNull", {"PathThatDoesNotExistRaisesErrorWithTexts", "ErrorTextsAreNeverNull"}}};

class FlawOf : public testing::TestWithParam<Flaw> {};

TEST_P(FlawOf, BrokenClientIsReportedByThePromisesThatItBreaks) {
  const Flaw& flaw = GetParam();
  EXPECT_EQ(brokenBy(flaw.name, flaw.certainForItsPromisesOnly ? flaw.promises : allNames()), flaw.promises);
}

INSTANTIATE_TEST_SUITE_P(Each, FlawOf, testing::ValuesIn(flaws),
                         [](const auto& test) { return test.param.name; });

TEST(Flaws, NoneBreaksNoPromise) {
  EXPECT_EQ(brokenBy(""), Names());
}

TEST(Flaws, BreakEveryPromiseBetweenThem) {
  Names broken;
  for (const Flaw& flaw : flaws) {
    if (flaw.promises != allNames()) {
      broken.insert(flaw.promises.begin(), flaw.promises.end());
    }
  }
  broken.insert("ContextIsMadeFromTwoEmptyTexts"); // broken by a flaw that breaks all
  EXPECT_EQ(broken, allNames());
}

} // namespace
} // namespace conformance
