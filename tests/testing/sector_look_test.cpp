// SPDX-License-Identifier: MIT
#include "testing/sector_look.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

class SectorLookTest : public testing::Test {
protected:
    static SectorMarkers ours() {
        SectorMarkers all;
        all.assign({"1,BAD SECTOR,T,O,words", "0,MARK,T,R,marks"});
        return all;
    }
    static std::string sector(const std::string& beginning, char rest = '.') {
        return beginning + std::string(512 - beginning.size(), rest);
    }

    const SectorMarkers markers = ours();
    SectorLook look{markers};
};

TEST_F(SectorLookTest, MarkedSectorsAreUnreadAndZerosAreCountedApart) {
    look.add(sector("healthy") + sector("BAD SECTOR") + sector("BAD SECTOR") + std::string(512, '\0') + "tail");
    EXPECT_EQ(look.take(), (SectorFindings{{{512, 1536}}, 512, "words"}));
    EXPECT_EQ(look.take(), SectorFindings{}) << "a new file";
}

TEST_F(SectorLookTest, PiecesOfAnyLengthGiveTheSame) {
    std::string bytes = sector("healthy") + sector("BAD SECTOR") + sector("x");
    for (int i = 0; i < 128; ++i) bytes += "MARK";
    bytes += std::string(700, '\0') + sector("BAD SECTOR") + "BAD SEC";
    look.add(bytes);
    const auto whole = look.take();
    EXPECT_EQ(whole.unread, (ByteRanges{{512, 1024}, {1536, 2048}}));
    EXPECT_EQ(whole.zeroBytes, 512U);
    for (const std::size_t length : {1U, 7U, 511U, 512U, 513U, 1000U}) {
        for (std::size_t at = 0; at < bytes.size(); at += length) look.add(std::string_view(bytes).substr(at, length));
        EXPECT_EQ(look.take(), whole) << length;
    }
}

TEST_F(SectorLookTest, EveryKindOfMarkerIsFound) {
    SectorMarkers kinds;
    kinds.assign({"0,SOMEWHERE,T,O,anywhere", "17,LATER,T,O,later", "9,F6,H,R,fill", "0,AB,T,R,words"});
    std::string filled;
    for (int i = 0; i < 256; ++i) filled += "BA";
    for (const auto& marked :
         {sector("....SOMEWHERE"), sector(std::string(16, '-') + "LATER"), sector("12345678", '\xF6'), filled}) {
        for (const bool together : {true, false}) {
            SectorMarkers alone;
            alone.assign({"17,LATER,T,O,later", "9,F6,H,R,fill", "0,AB,T,R,words"});
            SectorLook one(together ? kinds : alone);
            one.add(sector("healthy") + marked + sector("healthy"));
            const bool found = together || marked.find("SOMEWHERE") == std::string::npos;
            EXPECT_EQ(one.take().unread, found ? (ByteRanges{{512, 1024}}) : ByteRanges{}) << marked.substr(0, 24);
        }
    }
}

TEST_F(SectorLookTest, ATailThatTheMarkerWasCutToIsUnread) {
    look.add(sector("healthy") + "BAD SEC");
    EXPECT_EQ(look.take().unread, (ByteRanges{{512, 519}}));
}

TEST_F(SectorLookTest, HolesAreZerosAndWhatCannotBeReadIsUnread) {
    look.add(sector("healthy"));
    look.addHole(6'000'000'000'000);
    look.addUnread(4096);
    look.add(sector("BAD SECTOR"));
    EXPECT_EQ(look.take(), (SectorFindings{{{6'000'000'000'512, 6'000'000'005'120}}, 6'000'000'000'000, "words"}));
    look.addUnread(100);
    look.add(std::string(412, 'x') + sector("BAD SECTOR"));
    EXPECT_EQ(look.take().unread, (ByteRanges{{0, 100}, {512, 1024}})) << "sectors begin where they did";
}

}  // namespace
}  // namespace quillon
