// SPDX-License-Identifier: MIT
#include "app/application_folder.h"

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/temp_folder.h"

using namespace quillon;
using quillon::test::TempFolder;

namespace {

// Nobody can make files in a folder that does not exist, whoever runs the test.
constexpr const char* kNotWritable = "opt";

TEST(ApplicationFolder, IsTheFolderOfTheProgramWhenFilesCanBeMadeThere) {
    TempFolder folder;
    EXPECT_EQ(applicationFolder(folder.path(), folder / "home"), folder.path());
    EXPECT_FALSE(pathExists(folder / "home"));
}

TEST(ApplicationFolder, IsMadeBelowTheUsersDataOtherwise) {
    TempFolder folder;
    EXPECT_EQ(applicationFolder(folder / kNotWritable, folder / "home/.local/share"),
              folder / "home/.local/share/quillon");
    EXPECT_TRUE(isFolder(folder / "home/.local/share/quillon"));
}

TEST(ApplicationFolder, StaysWithTheProgramWhenTheUserHasNoPlaceEither) {
    TempFolder folder;
    folder.write("home", "a file where the folder should be");
    EXPECT_EQ(applicationFolder(folder / kNotWritable, folder / "home"), folder / kNotWritable);
    EXPECT_EQ(applicationFolder(folder / kNotWritable, {}), folder / kNotWritable);
}

TEST(ApplicationFolder, LinksTheFilesOfTheProgramForTheUser) {
    TempFolder folder;
    folder.write("opt/db.zip", "database");
    folder.write("opt/settings.dat", "of the one who installed it");
    const auto own = userApplicationFolder(folder / "opt", folder / "home");
    ASSERT_TRUE(own);
    EXPECT_EQ(*own, folder / "home/quillon");
    EXPECT_EQ(readWholeFile(*own / "db.zip").value_or(""), "database");
    EXPECT_EQ(listEntries(*own)->size(), 1U);
}

TEST(ApplicationFolder, AFileOfTheUsersOwnStaysAndALinkIntoNothingIsMadeAnew) {
    TempFolder folder;
    folder.write("opt/db.zip", "database");
    folder.write("opt/Quillon.chm", "help");
    folder.write("home/quillon/db.zip", "own database");
    std::filesystem::create_symlink(folder / "gone/Quillon.chm", folder / "home/quillon/Quillon.chm");
    const auto own = userApplicationFolder(folder / "opt", folder / "home");
    ASSERT_TRUE(own);
    EXPECT_EQ(readWholeFile(*own / "db.zip").value_or(""), "own database");
    EXPECT_EQ(readWholeFile(*own / "Quillon.chm").value_or(""), "help");
}

}  // namespace
