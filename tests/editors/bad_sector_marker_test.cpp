// SPDX-License-Identifier: MIT
#include "editors/bad_sector_marker.h"

#include <gtest/gtest.h>

#include "editors/editor_folders.h"

using namespace quillon;
using quillon::test::EditorFolders;

namespace {

TEST(BadSectorMarker, OneCharacterFillsTheSector) {
    EXPECT_EQ(markerSector("x"), std::string(512, 'x'));
}

TEST(BadSectorMarker, TheTextRepeatsAndTheLastRepetitionIsCut) {
    const std::string sector = markerSector("BADSECTOR");
    EXPECT_EQ(sector.size(), 512U);
    EXPECT_EQ(sector.substr(0, 18), "BADSECTORBADSECTOR");
    EXPECT_EQ(sector.substr(504), "BADSECTO");
}

TEST(BadSectorMarker, AMarkerOf513CharactersIsCutTo512) {
    EXPECT_EQ(markerSector(std::string(512, 'a') + "b"), std::string(512, 'a'));
    EXPECT_EQ(markerSector(std::string(512, 'a')), std::string(512, 'a'));
}

TEST(BadSectorMarker, ACharacterIsOneByteOfThePage) {
    EXPECT_EQ(markerSector("\xC3\xA4\xD0\x96").substr(0, 4), "\xE4?\xE4?");
}

TEST(BadSectorMarker, ThePreviewFileHoldsTheSectorAndALineEnd) {
    EditorFolders folders;
    folders.folder.write("app/bSector.test", std::string(2000, 'o'));
    const auto bytes = writePreview(folders.installation, "Q");
    ASSERT_TRUE(bytes);
    EXPECT_EQ(*bytes, std::string(512, 'Q') + "\r\n");
    EXPECT_EQ(folders.bytesOf("app/bSector.test"), *bytes);
}

TEST(BadSectorMarker, AnEmptyMarkerWritesNothing) {
    EditorFolders folders;
    EXPECT_FALSE(writePreview(folders.installation, ""));
    EXPECT_FALSE(folders.has("app/bSector.test"));
}

TEST(BadSectorMarker, AFileThatCannotBeWrittenIsAFailure) {
    EditorFolders folders;
    std::filesystem::remove_all(folders.folder / "app");
    EXPECT_FALSE(writePreview(folders.installation, "Q"));
}

}  // namespace
