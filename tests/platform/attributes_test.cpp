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

// Two volumes are told apart by their device: one without real bits says nothing of the other.
TEST(Attributes, EveryVolumeIsAskedOnce) {
    const TempFolder temp;
    temp.write("a", "");
    const auto path = temp.write("b", "");
    if (::setxattr(path.c_str(), "user.DOSATTRIB", "0x21", 4, 0) != 0)
        GTEST_SKIP() << "this volume keeps no user attributes";
    const Directory folder = Directory::open(temp.path()).value();
    const EntryInfo a = folder.describe("a").value();
    EntryInfo b = folder.describe("b").value();
    AttributeReader reader;
    EXPECT_EQ(reader.attributesOf(folder, "a", a), 32U) << "the first file of the volume has no real bits";
    EXPECT_EQ(reader.attributesOf(folder, "b", b), 32U) << "so no other file of it is asked";
    ++b.device;
    EXPECT_EQ(reader.attributesOf(folder, "b", b), 0x21U);
    EXPECT_EQ(reader.attributesOf(folder, "a", a), 32U);
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
