// SPDX-License-Identifier: MIT
// "Zip" while it is killed or fails at every single system call that changes something: no half archive stands under
// the archive's name, and the bytes of every list and of an overwritten archive stand somewhere. The calls are made to
// fail by strace; without it, or where it may not trace, this program says so and counts as skipped.
#include <filesystem>
#include <map>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "archive/zip_bytes.h"
#include "archive/zip_reader.h"
#include "archive/zip_writer.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/strace.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

std::string probe;  // the path of quillon_zip_fault_probe, from the command line

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

    [[nodiscard]] std::string program() const { return probe + " '" + temp.path().native() + "' 2>/dev/null"; }

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
        const auto calls = test::changingCalls() + ",lseek";
        const auto faults = test::everyFault(test::countCalls(calls, program(), (temp / "strace.log").native()));
        EXPECT_GE(faults.size(), 30U) << "hardly a call was disturbed";
        for (const auto& fault : faults) {
            prepare(withOldArchive);
            const bool saidDone = test::runShell(test::traced(fault, program())) == 0;
            expectNothingLost(saidDone, fault);
        }
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
        const bool saidDone = test::runShell(test::traced(fault, program())) == 0;
        EXPECT_TRUE(i > 1 || !saidDone) << "the first read is the packing";
        expectNothingLost(saidDone, fault);
    }
}

}  // namespace
}  // namespace quillon

int main(int count, char* arguments[]) {
    return quillon::test::runTracingTests(count, arguments, quillon::probe);
}
