// SPDX-License-Identifier: MIT
#include "testing/second_opinion/second_opinion.h"

#include <random>

#include "testing/second_opinion/made_head.h"

namespace quillon::test {

namespace {

// Asked again with the bytes that it wants, the opinion comes to rest.
void expectRest(const std::string& head, std::uint64_t size) {
    constexpr int steps = 4;
    for (int i = 0; i < steps; ++i) {
        const auto doubt = secondOpinion(head, size);
        if (!doubt || doubt->kind != DoubtKind::Cut)
            return;
        EXPECT_GT(doubt->needed, size);
        size = doubt->needed;
    }
    ADD_FAILURE() << "still a cut with " << size << " bytes: " << secondOpinionFormat(head);
}

TEST(SecondOpinionTest, WhatIsNotKnownHasNoDoubt) {
    EXPECT_FALSE(secondOpinion("", 0));
    EXPECT_FALSE(secondOpinion("", 1000000));
    EXPECT_FALSE(secondOpinion(std::string(512, '\0'), 512));
    EXPECT_FALSE(secondOpinion(std::string(512, ' '), 512));
    EXPECT_FALSE(secondOpinion("just some text", 14));
    EXPECT_EQ(secondOpinionFormat("just some text"), "");
}

TEST(SecondOpinionTest, TheMarkDeepInTheHeadDecidesFirst) {
    // A picture of medicine may begin as a TIFF file, and a box of 256 bytes as an icon.
    EXPECT_EQ(secondOpinionFormat(MadeHead().hex(0, "49492A00").text(128, "DICM").bytes()), "DICOM");
    EXPECT_EQ(secondOpinionFormat(MadeHead().be32(0, 256).text(4, "ftyp").bytes()), "ISO media");
    EXPECT_EQ(secondOpinionFormat(MadeHead().hex(0, "00010000").text(4, "Standard Jet DB").bytes()), "Access");
}

TEST(SecondOpinionTest, ACutIsHealedByTheBytesThatItCites) {
    // Signatures with noise behind.
    const std::string marks[] = {"RIFF",
                                 "FORM",
                                 "BM",
                                 "8BPS",
                                 "PK\3\4",
                                 "MSCF",
                                 "OggS",
                                 "fLaC",
                                 "caff",
                                 "MThd",
                                 "II*",
                                 "MM",
                                 "wOFF",
                                 "OTTO",
                                 "GIF89a",
                                 "MZ",
                                 "regf",
                                 "\x7F"
                                 "ELF",
                                 "GRIB",
                                 "LASF",
                                 "ITSF",
                                 "MDMP",
                                 "WAD"};
    std::mt19937 chance(16);
    for (int round = 0; round < 20000; ++round) {
        std::string head(chance() % 513, '\0');
        for (auto& byte : head) byte = static_cast<char>(chance() % 4 == 0 ? chance() : 0);
        const auto& mark = marks[chance() % std::size(marks)];
        head.replace(0, std::min(mark.size(), head.size()), mark);
        const std::uint64_t size = chance() % 100000;
        const auto doubt = secondOpinion(head, size);
        if (!doubt || doubt->kind != DoubtKind::Cut)
            continue;
        EXPECT_GT(doubt->needed, size);
        expectRest(head, doubt->needed);
    }
}

}  // namespace

}  // namespace quillon::test
