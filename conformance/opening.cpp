// SPDX-License-Identifier: BSD-3-Clause
// Promises on the context, on opening a database, and on errors.
#include "conformance/databases.h"
#include "conformance/promise.h"

#include <filesystem>

namespace conformance {

namespace {

using riegl::rdb::Context;
using riegl::rdb::Pointcloud;
using riegl::rdb::pointcloud::OpenSettings;

void expectOpenRaises(const std::string& what, const std::string& path) {
  const Context context("", "");
  Pointcloud database{Context(context)};
  expectError("open of " + what, [&] { database.open(path, OpenSettings()); });
}

void copyOfTheContextIsEnough(Databases& databases) {
  const std::string path = databases.makePattern(10);
  const Context context("", "");
  Pointcloud database{Context(context)}; // the copy is gone when open is called
  database.open(path, OpenSettings());
  expectEqual("exists(\"riegl.class\")", database.pointAttribute().exists("riegl.class"), true);
}

void missingPathRaises(Databases& databases) {
  databases.makePattern(1);
  Pointcloud database{Context("", "")};
  const ErrorTexts texts = expectError("open of a path at which there is nothing",
                                       [&] { database.open(databases.missingPath(), OpenSettings()); });
  expect(texts.what && !texts.what->empty(), "what() has a text", "an empty text or a null pointer");
  expect(texts.details && !texts.details->empty(), "details() has a text", "an empty text or a null pointer");
}

void errorIsStandard(Databases& databases) {
  databases.makePattern(1);
  Pointcloud database{Context("", "")};
  try {
    database.open(databases.missingPath(), OpenSettings());
  } catch (const std::exception&) {
    return;
  }
  throw Broken{"open of a path at which there is nothing raises a std::exception", "no exception"};
}

void otherFilesRaise(Databases& databases) {
  databases.makePattern(1);
  expectOpenRaises("an empty file", databases.makeFile("empty.rdbx", ""));
  expectOpenRaises("a text file", databases.makeFile("text.rdbx", std::string(100000, 'a')));
  expectOpenRaises("a folder", databases.folder());
}

void textsAreNeverNull(Databases& databases) {
  Load load(databases.makePattern(1));
  Pointcloud other{Context("", "")};
  const std::string file = databases.makeFile("text.rdbx", "no database");
  GuardedBuffer<double> buffer(1);
  const std::vector<ErrorTexts> all{
      expectError("open of a path at which there is nothing",
                  [&] { other.open(databases.missingPath(), OpenSettings()); }),
      expectError("open of a text file", [&] { other.open(file, OpenSettings()); }),
      expectError("bind of an absent attribute", [&] { load.bind("riegl.absent", buffer); })};
  for (const ErrorTexts& texts : all) {
    expect(texts.what.has_value(), "what() is a text", "a null pointer");
    expect(texts.details.has_value(), "details() is a text", "a null pointer");
  }
}

void failedOpenEndsQuietly(Databases& databases) {
  const std::string path = databases.makePattern(10);
  {
    Pointcloud database{Context("", "")};
    expectError("open of a path at which there is nothing",
                [&] { database.open(databases.missingPath(), OpenSettings()); });
  }
  {
    Pointcloud again{Context("", "")};
    expectError("open of a path at which there is nothing",
                [&] { again.open(databases.missingPath(), OpenSettings()); });
    try {
      again.open(path, OpenSettings());
      expectEqual("exists(\"riegl.class\") after a second open", again.pointAttribute().exists("riegl.class"),
                  true);
    } catch (const riegl::rdb::Error&) {
      // A client need not open twice with one object.
    }
  }
  Load load(path);
  expectWholePattern(load, "riegl.class", 10, 4);
}

void pathIsUtf8(Databases& databases) {
  const std::string path =
      databases.make({3, {patternColumn("riegl.class", 3)}, {}}, "Fl\xC3\xBCge \xE2\x80\x93 S\xC3\xBC"
                                                                 "d");
  Load load(path);
  expectWholePattern(load, "riegl.class", 3, 3);
}

void sameFileOpensTwice(Databases& databases) {
  const std::string path = databases.makePattern(10);
  Load first(path);
  GuardedBuffer<double> buffer(6);
  first.bind("riegl.class", buffer);
  expectEqual("next(6)", first.query.next(6), 6U);
  {
    Load second(path);
    expectWholePattern(second, "riegl.class", 10, 4);
  }
  expectEqual("next(6) after a second load of the file", first.query.next(6), 4U);
  buffer.expectPattern(6, 4);
}

} // namespace

std::vector<Promise> openingPromises() {
  return {
      {"ContextIsMadeFromTwoEmptyTexts",
       "A context is made from two empty texts; a database that was made with a copy of it needs the copy no "
       "longer.",
       "A load makes one context, hands a copy to the database and drops the copy at once.",
       copyOfTheContextIsEnough},
      {"PathThatDoesNotExistRaisesErrorWithTexts",
       "`open` of a path at which there is nothing raises `riegl::rdb::Error`; neither of its texts is "
       "empty.",
       "The load returns both texts to its host and leaves the grid as it was.", missingPathRaises},
      {"ErrorIsAStandardException", "`riegl::rdb::Error` is a `std::exception`.",
       "A host that calls `getIsUTCandWeekday` or `getAttributesViaJson` itself may catch `std::exception`.",
       errorIsStandard},
      {"FileThatIsNoDatabaseRaisesError",
       "`open` of an empty file, of a file of another format and of a folder raises `riegl::rdb::Error`.",
       "The load returns the texts; nothing else looks at the file before.", otherFilesRaise},
      {"ErrorTextsAreNeverNull", "`what()` and `details()` of every error are texts, at most empty ones.",
       "Both are made into `std::string` without a look at the pointer.", textsAreNeverNull},
      {"FailedOpenLeavesObjectsThatCanBeDestroyed",
       "After `open` has raised, the database is destroyed without harm, and other databases open as before; "
       "a second "
       "`open` of the same object opens or raises `riegl::rdb::Error`.",
       "The load ends at the first error, and the host may load another file.", failedOpenEndsQuietly},
      {"PathIsUtf8", "`open` takes the path as UTF-8 bytes.",
       "The path of the host is passed on as it is, with any characters.", pathIsUtf8},
      {"SameFileOpensTwice", "A file that is open opens once more, and the two know nothing of each other.",
       "A host may look at a database while it loads it.", sameFileOpensTwice},
  };
}

} // namespace conformance
