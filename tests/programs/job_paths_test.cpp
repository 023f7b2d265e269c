// SPDX-License-Identifier: MIT
// The folders that quillon-job is given.
#include "programs/job_command.h"

#include "programs/command_fixture.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

using JobPathsTest = CommandFixture;

TEST_F(JobPathsTest, TheWayUpBehindALinkIsTheSystems) {
    install();
    folder.write("elsewhere/deep/file", "");
    folder.write("elsewhere/b.abc", "x");
    fs::create_directory_symlink(folder / "elsewhere/deep", folder / "way");
    EXPECT_EQ(command({"--job", "1", "--app", (folder / "app").native(), "--json", "--source",
                       (folder / "way/..").native() + "/."}),
              0)
        << err.str();
    EXPECT_EQ(json()["source"], fs::canonical(folder / "elsewhere").native() + "/");
    EXPECT_EQ(json()["counters"]["files"], 2);
}

TEST_F(JobPathsTest, ATargetInTheSourceIsRefusedAtTheStart) {
    install();
    fs::create_directory(folder / "source/sub");
    fs::create_directory_symlink(folder / "source/sub", folder / "way");
    for (const char* target : {"source", "source/new", "way", "way/new"}) {
        EXPECT_EQ(job({"--target", (folder / target).native()}), 2) << target;
        EXPECT_TRUE(told("lies in the source, which is never written to")) << err.str();
    }
}

TEST_F(JobPathsTest, ATargetThatCannotBeWrittenIsToldOnceAsDenied) {
    install();
    for (const char* name : {"a", "b", "c"}) folder.write(std::string("source/") + name, "x");
    folder.write("file", "");
    EXPECT_EQ(job({"--target", (folder / "file/below").native()}), 1);
    EXPECT_TRUE(told("Permission Denied: Unable to write to the target " + (folder / "file/below").native() + "\n"));
    EXPECT_FALSE(told("Error copying"));
    EXPECT_FALSE(fs::exists(folder / "local/1234.csv"));
}

TEST_F(JobPathsTest, ATargetWithContentIsAskedAboutAsTheWindowDoes) {
    install();
    const auto file = folder.write("source/a", "x");
    folder.write("target/older", "");
    const std::vector<std::string> options = {"--target", (folder / "target").native()};
    EXPECT_EQ(job(options), 1);
    EXPECT_TRUE(
        told("Warning !: There are aleady files stored on this drive or folder. Any existing files or folders "
             "may be overwritten, do you still want to copy?\n"))
        << err.str();
    EXPECT_EQ(job({"--yes", "--json", options[0], options[1]}), 0) << err.str();
    EXPECT_TRUE(told("Copy to : " + (folder / "target").native() + " (Overwrite existing files )"));
    EXPECT_EQ(folder.read("target" + file.native()), "x");
    EXPECT_EQ(json()["counters"]["copied"], 1);
}

}  // namespace

}  // namespace quillon::test
