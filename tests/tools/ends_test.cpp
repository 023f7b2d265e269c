// SPDX-License-Identifier: MIT
#include "dbcheck/ends.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon::test {

namespace {

using namespace std::string_literals;

// Not a chunk of any meaning in between: only the ends are looked at.
const std::string kPng = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x10\0\0\0\x10\x08\x02\0\0\0\x90\x91\x68\x36"s +
                         "\0\0\x13\x88IDAT"s + std::string(5004, 'x') + "\0\0\0\0IEND\xAE\x42\x60\x82"s;

TEST(EndScores, CutsOfAWholeFileAreFound) {
    TempFolder folder;
    folder.write("deep/er/a.png", kPng);
    folder.write("cut.png", kPng.substr(0, 4000));
    folder.write("note.txt", "nobody knows the end of this");
    std::filesystem::create_directory_symlink(folder.path(), folder / "deep/circle");
    const auto scores = scoreEnds(folder.path());
    EXPECT_EQ(scores.files(), 2U);
    const EndScore& png = scores.formats.at("PNG");
    EXPECT_EQ(png.doubted, 1U);
    EXPECT_EQ(png.cuts, 20U);
    EXPECT_EQ(png.found, 20U);
    ASSERT_EQ(scores.doubted.size(), 1U);
    EXPECT_TRUE(scores.doubted[0].starts_with((folder / "cut.png").native() + ": cut: ")) << scores.doubted[0];
    EXPECT_NE(endTable(scores).find("| PNG | 2 | 1 |"), std::string::npos) << endTable(scores);
}

}  // namespace

}  // namespace quillon::test
