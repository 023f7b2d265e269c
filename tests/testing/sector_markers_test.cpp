// SPDX-License-Identifier: MIT
#include "testing/sector_markers.h"

#include <gtest/gtest.h>

#include "testing/list_folders.h"

namespace quillon::test {

namespace {

std::string filledWith(const std::string& pattern, std::size_t length = 512, std::size_t phase = 0) {
    std::string bytes;
    while (bytes.size() < length + phase) bytes += pattern;
    return bytes.substr(phase, length);
}

std::string behind(const std::string& beginning, char rest = '\0') {
    return beginning + std::string(512 - beginning.size(), rest);
}

SectorMarkers markersOf(const std::vector<std::string_view>& lines) {
    SectorMarkers markers;
    markers.assign(lines);
    return markers;
}

std::string nameIn(const SectorMarkers& markers, std::string_view sector) {
    const auto* found = markers.find(sector);
    return found == nullptr ? "-" : found->name;
}

TEST(SectorMarkersTest, ARepeatingMarkerFillsTheSectorAndMayGoOnFromTheOneBefore) {
    const auto markers = markersOf({"0,BAD SECTOR ,T,R,words"});
    EXPECT_EQ(nameIn(markers, filledWith("BAD SECTOR ")), "words");
    EXPECT_EQ(nameIn(markers, filledWith("BAD SECTOR ", 512, 7)), "words");
    EXPECT_EQ(nameIn(markers, filledWith("bad sector ")), "-") << "bytes, not letters";
    std::string other = filledWith("BAD SECTOR ");
    other.back() = 'x';
    EXPECT_EQ(nameIn(markers, other), "-");
    EXPECT_EQ(nameIn(markers, filledWith("BAD SECTOR", 512)), "-");
}

TEST(SectorMarkersTest, AMarkerThatStandsOnceLeavesTheRestOpen) {
    const auto markers = markersOf({"1,4241440A,H,O,first", "17,UNREAD,T,O,later", "0,SOMEWHERE,T,O,anywhere"});
    EXPECT_EQ(nameIn(markers, behind("BAD\n", 'x')), "first");
    EXPECT_EQ(nameIn(markers, behind(std::string(16, '-') + "UNREAD")), "later");
    EXPECT_EQ(nameIn(markers, behind(std::string(15, '-') + "UNREAD")), "-");
    EXPECT_EQ(nameIn(markers, behind(std::string(300, '-') + "SOMEWHERE")), "anywhere");
}

TEST(SectorMarkersTest, AMarkerMayRepeatFromItsPositionOn) {
    const auto markers = markersOf({"9,F6,H,R,fill behind a head"});
    EXPECT_EQ(nameIn(markers, behind("12345678", '\xF6')), "fill behind a head");
    EXPECT_EQ(nameIn(markers, behind("123456789", '\xF6')), "-");
}

TEST(SectorMarkersTest, TheEndOfAFileCutsTheMarker) {
    const auto markers = markersOf({"1,BAD SECTOR,T,O,once", "0,UNREADABLE,T,R,again"});
    EXPECT_EQ(nameIn(markers, "BAD SE"), "once");
    EXPECT_EQ(nameIn(markers, "BAD "), "once");
    EXPECT_EQ(nameIn(markers, "BAD"), "-") << "three bytes stand in healthy files";
    EXPECT_EQ(nameIn(markers, "READABLEUNREADAB"), "again");
    EXPECT_EQ(nameIn(markers, "UNREADABL"), "-");
    EXPECT_EQ(nameIn(markers, ""), "-");
}

TEST(SectorMarkersTest, LinesThatMarkNothingAreLeftOut) {
    for (const char* line : {"", "1", "1,BAD SECTOR,T", "1,,T,O,empty", "1,BAD,T,O,short", "0,000000000000,H,R,zeros",
                             "1,0000,H,O,zeros", "1,FFFFFFFFFF,H,O,one byte", "510,BAD SECTOR,T,O,behind the end"})
        EXPECT_TRUE(markersOf({line}).all().empty()) << line;
    EXPECT_EQ(markersOf({"0,FF,H,R,a fill", "x,F6F6,H,R,anywhere"}).all().size(), 2U);
}

TEST(SectorMarkersTest, AMarkerComesBackFromItsLine) {
    const SectorMarker markers[] = {{0, "BAD SECTOR", true, "words"},
                                    {17, std::string("\0\x01,x", 4), false, "caf\xC3\xA9"},
                                    {1, "a,b,c", false, ""}};
    for (const auto& marker : markers) EXPECT_EQ(markerOfLine(lineOfMarker(marker)), marker) << lineOfMarker(marker);
    EXPECT_EQ(lineOfMarker(markers[0]), "0,BAD SECTOR,T,R,words");
    EXPECT_EQ(lineOfMarker(markers[2]), "1,612C622C63,H,O,");
}

TEST(SectorMarkersTest, ThePublishedOnesKnowWhatManualsTell) {
    const auto markers = SectorMarkers::published();
    EXPECT_EQ(nameIn(markers, filledWith("BAD SECTOR")), "BAD SECTOR");
    EXPECT_EQ(nameIn(markers, filledWith("BAD-SECTOR ", 512, 5)), "BAD-SECTOR");
    EXPECT_EQ(nameIn(markers, filledWith("-=[BAD SECTOR]=-")), "floppy image");
    EXPECT_EQ(nameIn(markers, behind(std::string("BadSectoR\0", 10), '?')), "ntfsclone rescue");
    EXPECT_EQ(nameIn(markers, behind("BadSecto", '?')), "ntfsclone rescue");
    EXPECT_EQ(nameIn(markers, behind("BADSECTO", '?')), "partclone rescue");
    EXPECT_EQ(nameIn(markers, behind("BADSECTORS are listed here", '.')), "-");
    EXPECT_EQ(nameIn(markers, filledWith("NON-RESCUED-SECTOR ", 512, 3)), "NON-RESCUED-SECTOR");
    EXPECT_EQ(nameIn(markers, behind("\n# position 0x00001000 sector 0x00000008 status - ")), "ddrescue location");
    for (const char byte : {'\0', '\xFF', ' '}) EXPECT_EQ(nameIn(markers, std::string(512, byte)), "-");
    EXPECT_EQ(nameIn(markers, behind("BAD SECTOR is a term of disks.", '.')), "-");
}

class SectorMarkerFilesTest : public ListFolders {};

TEST_F(SectorMarkerFilesTest, WithoutAListThePublishedMarkersServeAndAnEmptyOneHasNone) {
    auto loaded = loadSectorMarkers(installation.paths());
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->all(), SectorMarkers::published().all());
    folder.write("local/Settings/BadSectors.dat", "");
    loaded = loadSectorMarkers(installation.paths());
    ASSERT_TRUE(loaded);
    EXPECT_TRUE(loaded->all().empty());
    folder.write("local/Settings/BadSectors.dat", "1,MARK,T,O,mine\r\n0,BAD,T,R,yours");
    loaded = loadSectorMarkers(installation.paths());
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->all(), (std::vector<SectorMarker>{{1, "MARK", false, "mine"}, {0, "BAD", true, "yours"}}));
}

TEST_F(SectorMarkerFilesTest, TheSharedListComesOverTheLocalOneWhileSharing) {
    folder.write("share/Settings/BadSectors.dat", "new");
    folder.write("local/Settings/BadSectors.dat", "old");
    ASSERT_TRUE(fetchSectorMarkers(installation.paths(), kept));
    EXPECT_EQ(folder.read("local/Settings/BadSectors.dat"), "old");
    share();
    ASSERT_TRUE(fetchSectorMarkers(installation.paths(), kept));
    EXPECT_EQ(folder.read("local/Settings/BadSectors.dat"), "new");
    EXPECT_EQ(folder.read(keptName("Settings/BadSectors.dat")), "old");
}

}  // namespace

}  // namespace quillon::test
