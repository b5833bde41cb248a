// SPDX-License-Identifier: BSD-3-Clause
// Pins the folders that are searched for a value of PROJ_LIB, for loaded code and for an installation of PROJ.
#include "platform/transformation/data_folders.h"

#include "model/torvel/objects/environment.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(DataFolders, OfCodeIsTheFolderOfItsFile) {
  EXPECT_EQ(Proj::folderOfCode(reinterpret_cast<const void*>(&Proj::folderOfCode)),
            Torvel::getExecutableDir());
  EXPECT_EQ(Proj::folderOfCode(nullptr), "");
}

TEST(DataFolders, OfAnInstallationLieBesideItsLibraries) {
  EXPECT_THAT(Proj::installedDataFolders("/opt/proj/lib"),
              ElementsAre("/opt/proj/share/proj", "/opt/share/proj"));
  EXPECT_THAT(Proj::installedDataFolders("/usr/lib/x86_64-linux-gnu"),
              ElementsAre("/usr/lib/share/proj", "/usr/share/proj"));
  EXPECT_THAT(Proj::installedDataFolders(""), IsEmpty());
}

} // namespace
