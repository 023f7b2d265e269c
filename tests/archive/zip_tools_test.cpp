// SPDX-License-Identifier: MIT
// Archives in the hands of other programs: unzip, 7z, bsdtar and Python, each where it is installed. And a list above
// 4 GiB, for which the format has longer fields.
#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "archive/zip_writer.h"
#include "support/temp_folder.h"

namespace quillon::test {
namespace {

bool run(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

class ZipToolsTest : public testing::Test {
protected:
    ZipToolsTest() {
        folder_.write("a.csv", "row 1\nrow 2\n");
        folder_.write("\xC3\xA4.csv", std::string(100'000, 'x'));
        folder_.write("empty.csv", "");
    }
    void zip(const ZipOptions& options = {}) const {
        ZipWriter writer(folder_ / "1234.zip", options);
        for (const char* name : {"a.csv", "\xC3\xA4.csv", "empty.csv"})
            ASSERT_TRUE(writer.add(folder_ / name, name).has_value());
        ASSERT_TRUE(writer.finish().has_value());
    }
    // Runs a shell command in the folder.
    bool inFolder(const std::string& command) const {
        return run("cd '" + folder_.path().native() + "' && " + command);
    }
    void expectSameFiles(const std::string& unpacked) const {
        for (const char* name : {"a.csv", "\xC3\xA4.csv", "empty.csv"})
            EXPECT_EQ(folder_.read(unpacked + "/" + name), folder_.read(name)) << name;
    }

    TempFolder folder_;
};

// A program that is not there cannot answer; the test says so.
#define NEEDS(program)               \
    if (!run("command -v " program)) \
    GTEST_SKIP() << program " is not installed"

TEST_F(ZipToolsTest, UnzipOpensAnArchive) {
    NEEDS("unzip");
    zip();
    EXPECT_TRUE(inFolder("LC_ALL=C.UTF-8 unzip -q 1234.zip -d out"));
    expectSameFiles("out");
}

TEST_F(ZipToolsTest, SevenZipOpensAnArchive) {
    NEEDS("7z");
    zip();
    EXPECT_TRUE(inFolder("LC_ALL=C.UTF-8 7z x -oout 1234.zip"));
    expectSameFiles("out");
}

TEST_F(ZipToolsTest, SevenZipOpensAProtectedArchiveWithThePasswordOnly) {
    NEEDS("7z");
    ZipOptions options;
    options.password = "secret";
    zip(options);
    EXPECT_FALSE(inFolder("7z t -pwrong 1234.zip"));
    EXPECT_TRUE(inFolder("LC_ALL=C.UTF-8 7z x -psecret -oout 1234.zip"));
    expectSameFiles("out");
}

TEST_F(ZipToolsTest, BsdtarOpensAnArchive) {
    NEEDS("bsdtar");
    zip();
    EXPECT_TRUE(inFolder("mkdir out && LC_ALL=C.UTF-8 bsdtar -xf 1234.zip -C out"));
    expectSameFiles("out");
}

TEST_F(ZipToolsTest, PythonOpensAnArchive) {
    NEEDS("python3");
    zip();
    EXPECT_TRUE(inFolder("python3 -c \"import zipfile; zipfile.ZipFile('1234.zip').extractall('out')\""));
    expectSameFiles("out");
}

TEST_F(ZipToolsTest, AListAboveFourGibibytesComesBackWhole) {
    const NativePath list = folder_.write("large.csv", "row");
    constexpr std::uintmax_t kSize = (std::uintmax_t(4) << 30U) + 12345;
    std::filesystem::resize_file(list, kSize);  // a hole: the list takes no room on the disk
    ZipWriter writer(folder_ / "large.zip", {});
    ASSERT_TRUE(writer.add(list, "large.csv").has_value());
    ASSERT_TRUE(writer.finish().has_value());
    EXPECT_EQ(equalToFiles(folder_ / "large.zip", writer.inputs(), {}), std::vector<bool>{true});
    if (run("command -v python3")) {
        EXPECT_TRUE(
            inFolder("python3 -c \"import zipfile; z = zipfile.ZipFile('large.zip'); "
                     "assert z.getinfo('large.csv').file_size == " +
                     std::to_string(kSize) + "\""));
    }
}

}  // namespace
}  // namespace quillon::test
