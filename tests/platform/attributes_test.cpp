// SPDX-License-Identifier: MIT
// Attribute bits: made from what every file system says, or the real ones where a volume keeps them.
#include "platform/attributes.h"

#include <string>

#include <sys/xattr.h>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::TempFolder;

std::uint32_t bitsOf(AttributeReader& reader, const TempFolder& temp, const std::string& name) {
    const Directory folder = Directory::open(temp.path()).value();
    return reader.attributesOf(folder, name, folder.describe(name).value());
}

TEST(Attributes, AnOrdinaryFileHas32) {
    const TempFolder temp;
    temp.write("a.txt", "");
    AttributeReader reader;
    EXPECT_EQ(bitsOf(reader, temp, "a.txt"), 32U);
}

TEST(Attributes, AFileThatNobodyMayWriteIsReadOnly) {
    const TempFolder temp;
    AttributeReader reader;
    const auto path = temp.write("a.txt", "");
    std::filesystem::permissions(path, std::filesystem::perms(0444));
    EXPECT_EQ(bitsOf(reader, temp, "a.txt"), 33U);
    for (const int mode : {0644, 0464, 0446}) {
        std::filesystem::permissions(path, std::filesystem::perms(mode));
        EXPECT_EQ(bitsOf(reader, temp, "a.txt"), 32U) << mode;
    }
}

TEST(Attributes, ANameThatBeginsWithADotIsHidden) {
    const TempFolder temp;
    AttributeReader reader;
    const auto path = temp.write(".hidden", "");
    EXPECT_EQ(bitsOf(reader, temp, ".hidden"), 34U);
    std::filesystem::permissions(path, std::filesystem::perms(0400));
    EXPECT_EQ(bitsOf(reader, temp, ".hidden"), 35U);
}

TEST(Attributes, CompressedAndEncryptedFilesHaveTheirBits) {
    const TempFolder temp;
    temp.write("a", "");
    const Directory folder = Directory::open(temp.path()).value();
    EntryInfo info = folder.describe("a").value();
    AttributeReader reader;
    info.compressed = true;
    EXPECT_EQ(reader.attributesOf(folder, "a", info), 2080U);
    info.encrypted = true;
    EXPECT_EQ(reader.attributesOf(folder, "a", info), 18464U);
    info.compressed = false;
    EXPECT_EQ(reader.attributesOf(folder, "a", info), 16416U);
}

// A server stores the bits of those files alone that somebody has touched through it.
TEST(Attributes, EveryFileOfAVolumeIsAskedForItsOwnBits) {
    const TempFolder temp;
    temp.write("a", "");
    temp.write("c", "");
    const auto path = temp.write("b", "");
    if (::setxattr(path.c_str(), "user.DOSATTRIB", "0x21", 4, 0) != 0)
        GTEST_SKIP() << "this volume keeps no user attributes";
    AttributeReader reader;
    EXPECT_EQ(bitsOf(reader, temp, "a"), 32U) << "the first file of the volume has no real bits";
    EXPECT_EQ(bitsOf(reader, temp, "b"), 0x21U);
    EXPECT_EQ(bitsOf(reader, temp, "c"), 32U);
}

TEST(Attributes, VolumesAreToldApartByTheirDevice) {
    const TempFolder temp;
    const auto path = temp.write("b", "");
    if (::setxattr(path.c_str(), "user.DOSATTRIB", "0x21", 4, 0) != 0)
        GTEST_SKIP() << "this volume keeps no user attributes";
    const Directory folder = Directory::open(temp.path()).value();
    EntryInfo info = folder.describe("b").value();
    AttributeReader reader;
    for (int volume = 0; volume < 3; ++volume, ++info.device) EXPECT_EQ(reader.attributesOf(folder, "b", info), 0x21U);
    info.device -= 3;
    EXPECT_EQ(reader.attributesOf(folder, "b", info), 0x21U);
}

// Only the door to /proc is asked there, and it says that it has no attributes.
TEST(Attributes, AVolumeWithoutAttributesHasMadeBits) {
    const Directory folder = Directory::open("/proc/self").value();
    AttributeReader reader;
    const auto info = folder.describe("stat");
    ASSERT_TRUE(info);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(reader.attributesOf(folder, "stat", *info), 33U);
}

TEST(Attributes, RealBitsCountWhereTheVolumeKeepsThem) {
    const TempFolder temp;
    const auto path = temp.write(".a", "");
    temp.write("plain", "");
    if (::setxattr(path.c_str(), "user.DOSATTRIB", "0x4020", 6, 0) != 0)
        GTEST_SKIP() << "this volume keeps no user attributes";
    AttributeReader reader;
    EXPECT_EQ(bitsOf(reader, temp, ".a"), 16416U);
    EXPECT_EQ(bitsOf(reader, temp, "plain"), 32U) << "a file without real bits has the made ones";
}

TEST(Attributes, TheTextFormOfAShareIsHexadecimal) {
    EXPECT_EQ(parseSambaAttributes("0x20"), 0x20U);
    EXPECT_EQ(parseSambaAttributes("0x4021"), 0x4021U);
    EXPECT_EQ(parseSambaAttributes(std::string_view("0x20\0", 5)), 0x20U);
    EXPECT_EQ(parseSambaAttributes("0x"), std::nullopt);
    EXPECT_EQ(parseSambaAttributes("0xzz"), std::nullopt);
    EXPECT_EQ(parseSambaAttributes("0x123456789"), std::nullopt);
    EXPECT_EQ(parseSambaAttributes(""), std::nullopt);
    EXPECT_EQ(parseSambaAttributes("20"), std::nullopt);
}

// The packed form: empty text, version twice, the fields that are valid, the bits, and more.
TEST(Attributes, ThePackedFormOfAShareIsReadWhenItsBitsAreValid) {
    const std::string head("\0\0\4\0\4\0\0\0", 8);
    const std::string bits("\x22\x40\0\0", 4);
    const std::string rest(12, '\x7E');
    EXPECT_EQ(parseSambaAttributes(head + std::string("\x11\0\0\0", 4) + bits + rest), 0x4022U);
    EXPECT_EQ(parseSambaAttributes(head + std::string("\x01\0\0\0", 4) + bits), 0x4022U);
    EXPECT_EQ(parseSambaAttributes(head + std::string("\x10\0\0\0", 4) + bits + rest), std::nullopt);
    EXPECT_EQ(parseSambaAttributes(head + std::string("\x01\0\0\0", 4) + "\x22\x40"), std::nullopt);
    EXPECT_EQ(parseSambaAttributes(std::string(3, '\0')), std::nullopt);
}

}  // namespace
}  // namespace quillon
