// SPDX-License-Identifier: MIT
// "Zip" while it is killed or fails at every single system call that changes something: no half archive stands under
// the archive's name, and the bytes of every list and of an overwritten archive stand somewhere. The calls are made to
// fail by strace; without it, or where it may not trace, this program says so and counts as skipped.
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "archive/zip_bytes.h"
#include "archive/zip_reader.h"
#include "archive/zip_writer.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/temp_folder.h"
#include "text/fields.h"

namespace quillon {
namespace {

std::string probe;  // the path of quillon_zip_fault_probe, from the command line

const char* const kChanging =
    "write,pwrite64,writev,fsync,fdatasync,rename,renameat,renameat2,ftruncate,chmod,fchmod,unlink,unlinkat,utimensat,"
    "copy_file_range,mkdir,lseek";

bool run(const std::string& command) {
    return std::system(command.c_str()) == 0;
}

class ZipFaults : public testing::Test {
protected:
    void prepare(bool withOldArchive) {
        for (const char* name : {"local", "zips"}) std::filesystem::remove_all(temp / name);
        std::filesystem::create_directories(temp / "zips");
        for (const auto& [name, bytes] : lists) temp.write("local/" + name, bytes);
        if (withOldArchive)
            test::writeZip(temp / "zips/1234.zip", {{"old.csv", "the old archive"}});
        oldArchive = withOldArchive ? temp.read("zips/1234.zip") : "";
    }

    [[nodiscard]] std::string command(const std::string& options) const {
        return "exec strace -qq " + options + " '" + probe + "' '" + temp.path().native() + "' 2>/dev/null";
    }

    // How often an undisturbed run makes each of these calls.
    std::map<std::string, int> calls() {
        const std::string log = (temp / "strace.log").native();
        EXPECT_TRUE(run(command("-o '" + log + "' -e signal=none -e trace=" + kChanging)));
        std::map<std::string, int> counts;
        const std::string text = readWholeFile(log).value_or("");
        for (const auto line : splitLines(text)) ++counts[std::string(line.substr(0, line.find('(')))];
        return counts;
    }

    // The bytes of every file that can be seen below the folders, archives opened.
    std::multiset<std::string> allBytes() const {
        std::multiset<std::string> found;
        for (const char* root : {"local", "zips"}) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(temp / root)) {
                if (entry.is_regular_file() && !isTemporaryName(entry.path().filename().native()))
                    found.insert(readWholeFile(entry.path()).value_or(""));
            }
        }
        return found;
    }

    void expectNothingLost(bool saidDone, const std::string& fault) {
        const NativePath archive = temp / "zips/1234.zip";
        auto found = allBytes();
        const bool isOld = !oldArchive.empty() && pathExists(archive) && temp.read("zips/1234.zip") == oldArchive;
        if (pathExists(archive) && !isOld) {
            const NativePath out = temp / "out";
            std::filesystem::remove_all(out);
            const auto extracted = extractArchive(archive, out);
            ASSERT_TRUE(extracted.has_value()) << fault << ": a half archive: " << extracted.error().text;
            for (const auto& file : extracted->files) found.insert(readWholeFile(file).value_or(""));
            EXPECT_EQ(extracted->files.size(), lists.size()) << fault;
        }
        EXPECT_TRUE(!saidDone || (pathExists(archive) && !isOld)) << fault << ": said to be done";
        for (const auto& [name, bytes] : lists) EXPECT_TRUE(found.contains(bytes)) << fault << ": lost " << name;
        EXPECT_TRUE(oldArchive.empty() || found.contains(oldArchive)) << fault << ": lost the old archive";
    }

    void disturb(bool withOldArchive) {
        prepare(withOldArchive);
        int runs = 0;
        for (const auto& [call, count] : calls()) {
            for (int i = 1; i <= count; ++i) {
                const std::string at = ":when=" + std::to_string(i);
                for (const auto& how : {":signal=KILL" + at, ":error=ENOSPC" + at, ":error=EIO" + at + "+"}) {
                    const std::string fault = "-e inject=" + call + how;
                    prepare(withOldArchive);
                    const bool saidDone = run(command("-o /dev/null " + fault));
                    expectNothingLost(saidDone, fault);
                    ++runs;
                }
            }
        }
        EXPECT_GE(runs, 30) << "hardly a call was disturbed";
    }

    test::TempFolder temp;
    const std::map<std::string, std::string> lists{{"1234-1.csv", "rows of partition 1\n"},
                                                   {"1234-2.csv", std::string(20'000, '2')}};
    std::string oldArchive;
};

TEST_F(ZipFaults, NoFailingCallLosesAListOrLeavesAHalfArchive) {
    disturb(false);
}

TEST_F(ZipFaults, NoFailingCallLosesAnArchiveThatIsOverwritten) {
    disturb(true);
}

TEST_F(ZipFaults, AListThatCannotBeReadIsNotLost) {
    for (int i = 1; i <= 4; ++i) {
        prepare(false);
        const std::string fault = "-P '" + (temp / "local/1234-2.csv").native() +
                                  "' -e inject=read,pread64:error=EIO:when=" + std::to_string(i) + "+";
        const bool saidDone = run(command("-o /dev/null " + fault));
        EXPECT_TRUE(i > 1 || !saidDone) << "the first read is the packing";
        expectNothingLost(saidDone, fault);
    }
}

}  // namespace
}  // namespace quillon

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (argc < 2 || std::system("strace -o /dev/null -e inject=fsync:error=EIO true 2>/dev/null") != 0) {
        std::cout << "strace is missing or may not trace here: skipped\n";
        return 77;
    }
    quillon::probe = argv[1];
    return RUN_ALL_TESTS();
}
