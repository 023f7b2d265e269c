// SPDX-License-Identifier: MIT
// A retest and the editor's "Done" that are killed or fail at every single system call that changes something: every
// row of the list stands in the list or, all of them, under Kept; a term file is the old one or the new one; and a copy
// that fails does not keep the other from being saved. The calls are made to fail by strace; without it, or where it
// may not trace, this program says so and counts as skipped.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/list_bytes.h"
#include "support/strace.h"
#include "support/temp_folder.h"
#include "text/list_text.h"

namespace quillon {
namespace {

using test::kKilledStatus;
using test::runShell;
using test::TempFolder;
using test::traced;

constexpr const char* kOldTerms = "1,QLX!,T\r\n";
constexpr const char* kNewTerms = "1,QLX!,T\r\n5,NEW,T\r\n";

std::string probe;  // the path of quillon_teaching_fault_probe, from the command line

class TeachingFaults : public testing::Test {
protected:
    /// A list of four rows, two of which a retest finds good; the term file, the same on the share.
    void prepare() const {
        for (const char* part : {"app", "local", "share", "source"}) std::filesystem::remove_all(temp / part);
        temp.write("app/tFile.csv", "the raw list of the last job");
        temp.write("local/Settings/Errors.dat",
                   "Header OK\r\nHeader Corrupt\r\nNo Extension\r\nUnknown or ambiguous file type\r\nFile "
                   "encrypted\r\nAccess error\r\nFile too small to test (<512 bytes)\r\nFile is zero "
                   "bytes\r\nInvalid File Name\r\nAppears to be of file type: \r\n");
        for (const char* root : {"local", "share"}) temp.write(std::string(root) + "/Database/qlx.dat", kOldTerms);
        for (const char* name : {"a", "b"})
            temp.write("source/" + std::string(name) + ".qlx", "QLX!" + std::string(600, 'x'));
        temp.write("source/c.qlx", std::string(600, 'x'));
        temp.write("local/J1.csv", list(u"Header Corrupt"));
    }
    [[nodiscard]] std::string list(std::u16string_view taught) const {
        std::u16string rows;
        const auto add = [&rows](std::string_view path, std::u16string_view result) {
            rows.append(toListText(path)).append(u",15/11/2026, 604, 32;Ab9x,").append(result).append(u"\r\n");
        };
        add((temp / "source/a.qlx").native(), taught);
        add("/elsewhere/d.pdf", u"Header OK");
        add((temp / "source/b.qlx").native(), taught);
        add((temp / "source/c.qlx").native(), u"Header Corrupt");
        return test::utf16Bytes(rows);
    }
    [[nodiscard]] bool holds(const std::string& name, std::string_view bytes) const {
        return readWholeFile(temp / name).value_or("") == bytes;
    }
    [[nodiscard]] bool keptHolds(const std::string& name, std::string_view bytes) const {
        if (!pathExists(temp / "local/Kept"))
            return false;
        const std::filesystem::directory_iterator moments(temp / "local/Kept");
        return std::any_of(begin(moments), end(moments), [&](const auto& moment) {
            return readWholeFile(moment.path() / name).value_or("") == bytes;
        });
    }
    [[nodiscard]] std::string program(const std::string& what) const {
        return probe + " " + what + " '" + temp.path().native() + "'";
    }
    /// Runs the program under every fault and has each outcome judged.
    void disturb(const std::string& what, const std::function<void(int status, const std::string& fault)>& judge) {
        prepare();
        const auto counts = test::countCalls(test::changingCalls(), program(what), (temp / "strace.log").native());
        const auto faults = test::everyFault(counts);
        EXPECT_GE(faults.size(), 10U) << "hardly a call was disturbed";
        for (const auto& fault : faults) {
            prepare();
            judge(runShell(traced(fault, program(what))), fault);
        }
    }

    TempFolder temp;
};

TEST_F(TeachingFaults, ARetestLeavesEveryRowInTheListOrUnderKept) {
    const std::string before = list(u"Header Corrupt");
    const std::string after = list(u"Header OK");
    disturb("retest", [&](int status, const std::string& fault) {
        if (status == 0) {
            EXPECT_TRUE(holds("local/J1.csv", after)) << fault << ": said to be done, but it is not";
            EXPECT_TRUE(keptHolds("J1.csv", before)) << fault;
            return;
        }
        EXPECT_TRUE(status == kKilledStatus || status == 3) << fault << ": status " << status;
        EXPECT_TRUE(holds("local/J1.csv", before) || holds("local/J1.csv", after) || keptHolds("J1.csv", before))
            << fault << ": rows are lost";
    });
}

// A retest that fails on its way leaves the rows in the temporary copy, too, as the next one finds them.
TEST_F(TeachingFaults, AListThatCannotBeWrittenIsWholeInTheCopyAndUnderKept) {
    const std::string before = list(u"Header Corrupt");
    prepare();
    const auto counts = test::countCalls("write", program("retest"), (temp / "strace.log").native());
    ASSERT_GE(counts.at("write"), 4) << "one for each row";
    prepare();
    // All rows but the first.
    const std::string fault = "-e inject=write:error=ENOSPC:when=" + std::to_string(counts.at("write") - 2) + "+";
    EXPECT_EQ(runShell(traced(fault, program("retest"))), 3);
    EXPECT_TRUE(holds("app/tFile.csv", before));
    EXPECT_TRUE(keptHolds("J1.csv", before));
    EXPECT_EQ(readWholeFile(temp / "local/J1.csv").value_or(""),
              list(u"Header OK").substr(0, readWholeFile(temp / "local/J1.csv").value_or("").size()))
        << "rows written so far are whole";
}

TEST_F(TeachingFaults, DoneLeavesTheOldOrTheNewTermsInBothFolders) {
    disturb("done", [&](int status, const std::string& fault) {
        for (const char* file : {"local/Database/qlx.dat", "share/Database/qlx.dat"})
            EXPECT_TRUE(holds(file, kOldTerms) || holds(file, kNewTerms)) << fault << ": " << file << " is torn";
        for (const char* folder : {"local/Database", "share/Database"})
            EXPECT_EQ(listFiles(temp / folder).value(), std::vector<std::string>{"qlx.dat"}) << fault;
        const bool oneSaved = holds("local/Database/qlx.dat", kNewTerms) || holds("share/Database/qlx.dat", kNewTerms);
        const bool oneCallOnly = fault.back() != '+';
        EXPECT_TRUE(oneSaved || status == kKilledStatus || !oneCallOnly) << fault << ": one failure kept both away";
    });
}

// The folder of one copy is gone, a file, or a link that leads nowhere.
TEST_F(TeachingFaults, ACopyThatFailsDoesNotKeepTheOtherFromBeingSaved) {
    const std::vector<std::function<void(const NativePath&)>> obstacles = {
        [](const NativePath&) {}, [this](const NativePath& folder) { temp.write(folder.native(), ""); },
        [](const NativePath& folder) { std::filesystem::create_symlink(folder, folder); }};
    for (std::size_t i = 0; i < obstacles.size(); ++i) {
        for (const auto& [failing, other] : {std::pair{"local", "share"}, std::pair{"share", "local"}}) {
            prepare();
            const NativePath folder = temp / (std::string(failing) + "/Database");
            std::filesystem::remove_all(folder);
            obstacles[i](folder);
            EXPECT_EQ(runShell(program("done")), 0) << failing << i;
            // Without its local file the editor began without terms.
            const char* saved = std::string_view(failing) == "local" ? "5,NEW,T\r\n" : kNewTerms;
            EXPECT_TRUE(holds(std::string(other) + "/Database/qlx.dat", saved)) << failing << i;
            EXPECT_TRUE(std::string_view(failing) == "share" || keptHolds("qlx.dat", kOldTerms)) << i;
        }
    }
}

// What could not be read was never on the screen, so it is not overwritten either.
TEST_F(TeachingFaults, ATermFileThatCannotBeReadGoesUnderKept) {
    for (const char* error : {"EIO", "EACCES", "ESTALE"}) {
        prepare();
        const std::string fault = "-P '" + (temp / "local/Database/qlx.dat").native() + "' -e inject=openat:error=";
        EXPECT_EQ(runShell(traced(fault + error, program("done"))), 0);
        EXPECT_TRUE(holds("local/Database/qlx.dat", "5,NEW,T\r\n")) << error;
        EXPECT_TRUE(keptHolds("Database/qlx.dat", kOldTerms)) << error;
    }
}

}  // namespace
}  // namespace quillon

int main(int count, char* arguments[]) {
    return quillon::test::runTracingTests(count, arguments, quillon::probe);
}
