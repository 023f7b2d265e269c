// SPDX-License-Identifier: MIT
// The saves and copies of this folder on a disk of which every call fails once: the old bytes or the new ones, and a
// failure that is reported. What is built upon them has its turn in tests/programs/every_save_test.cpp.
#include "platform/disk_calls.h"

#include <optional>

#include <gtest/gtest.h>

#include "platform/copy_file.h"
#include "platform/file_batch.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/failing_files.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::DisturbedWork;
using test::FailingFiles;
using test::namesIn;
using test::TempFolder;

const std::string kOld = "old bytes, and more of them";
const std::string kNew = "new bytes";

class EveryCall : public testing::Test {
protected:
    // Work on data/7.csv, which holds `oldBytes` before it (or is missing, without any) and `newBytes` behind it.
    [[nodiscard]] DisturbedWork changing(std::string name, std::optional<std::string> oldBytes, std::string newBytes,
                                         std::function<bool()> run) const {
        DisturbedWork work;
        work.name = std::move(name);
        work.prepare = [this, oldBytes] {
            for (const auto& entry : std::filesystem::directory_iterator(temp.path()))
                std::filesystem::remove_all(entry);
            std::filesystem::create_directory(temp / "data");
            if (oldBytes)
                temp.write("data/7.csv", *oldBytes);
        };
        work.run = std::move(run);
        work.isOld = [this, oldBytes] { return bytes() == oldBytes; };
        work.isNew = [this, newBytes] { return bytes() == newBytes; };
        work.leftover = [this] {
            const auto names = namesIn(temp / "data");
            return (names == "7.csv" || names.empty() ? "" : names) + (namesIn(temp.path()) == "data" ? "" : " above");
        };
        return work;
    }
    [[nodiscard]] std::optional<std::string> bytes() const {
        if (!pathExists(file))
            return std::nullopt;
        return temp.read("data/7.csv");
    }
    [[nodiscard]] std::function<bool()> copying(const std::string& source) const {
        return [this, source] {
            return FileCopier()
                .copy(source, file.native(), [](std::uint64_t, std::uint64_t) { return true; })
                .has_value();
        };
    }

    TempFolder temp;
    TempFolder elsewhere;
    const NativePath file = temp / "data/7.csv";
};

TEST_F(EveryCall, OfASaveLeavesTheOldFileOrTheNewOne) {
    for (const auto place : {TemporaryPlace::Beside, TemporaryPlace::AboveFolder}) {
        const auto save = [&] { return saveWholeFile(file, kNew, place).has_value(); };
        test::disturbEveryCall(changing("save over an old file", kOld, kNew, save));
        test::disturbEveryCall(changing("save of a new file", std::nullopt, kNew, save));
    }
}

// The share lets no file be replaced: the bytes go into the file that is there. Where it fails altogether in the middle
// of that, the temporary file has the new ones.
TEST_F(EveryCall, OfASaveInPlaceLosesNothing) {
    for (const auto& [oldBytes, newBytes] :
         {std::pair(kOld, kNew), std::pair(kNew, kOld), std::pair(kOld, kOld + "!")}) {
        auto work =
            changing("save in place", oldBytes, newBytes, [&] { return saveWholeFile(file, newBytes).has_value(); });
        work.refused = {{"rename", EACCES}};
        work.isOld = [this, oldBytes, newBytes] {
            bool found = bytes() == oldBytes;
            for (const auto& name : listEntries(temp / "data").value_or(std::vector<std::string>()))
                found = found || (isTemporaryName(name) && temp.read("data/" + name) == newBytes);
            return found;
        };
        test::disturbEveryCall(work);
    }
}

TEST_F(EveryCall, OfAnAppendLeavesWholeRows) {
    const std::string row = "new row\r\n";
    auto work =
        changing("append", "old row\r\n", "old row\r\n" + row, [&] { return appendToFile(file, row).has_value(); });
    work.newMayStand = true;  // a close that fails has all bytes behind it
    test::disturbEveryCall(work);
}

TEST_F(EveryCall, OfABatchLeavesWholeFiles) {
    const auto save = [&] {
        FileBatch batch;
        return batch.add(file, kNew, temp / "data").and_then([&] { return batch.commit(); }).has_value();
    };
    test::disturbEveryCall(changing("batch", std::nullopt, kNew, save));
}

TEST_F(EveryCall, OfACopyLeavesTheOlderTargetOrTheWholeNewOne) {
    std::string large;
    for (int i = 0; large.size() < 270000; ++i) large += std::to_string(i) + ",";
    using Refused = std::vector<std::pair<std::string, int>>;
    const Refused volumes[] = {{}, {{"copyRange", EXDEV}}, {{"link", EPERM}}};
    for (const auto& content : {std::string("small"), large}) {
        const std::string source = elsewhere.write("source", content).native();
        for (const auto& refused : volumes) {
            for (const auto& old : {std::optional<std::string>(), std::optional(kOld)}) {
                auto work = changing("copy of " + std::to_string(content.size()), old, content, copying(source));
                work.refused = refused;
                test::disturbEveryCall(work);
            }
        }
    }
}

TEST_F(EveryCall, OfADataFileCopyLeavesTheOldFileOrTheNewOne) {
    const auto source = elsewhere.write("jpg.dat", kNew);
    auto work = changing("copy of a data file", kOld, kNew, [&] { return copyDataFile(source, file).has_value(); });
    work.newMayStand = true;  // the time is set behind the save, and a wrong one makes the next job copy again
    test::disturbEveryCall(work);
}

TEST_F(EveryCall, ThatFailsOnTheSourceOfACopyIsTheSourcesFailure) {
    const std::string source = elsewhere.write("source", std::string(700000, 's')).native();
    changing("", kOld, "", {}).prepare();
    FailingFiles disk;
    disk.refuse("copyRange", EIO);
    disk.failAt(2, {EIO, true}, "read");
    const auto copied = FileCopier().copy(source, file.native(), [](std::uint64_t, std::uint64_t) { return true; });
    ASSERT_FALSE(copied);
    EXPECT_EQ(copied.error().side, CopySide::Source);
    EXPECT_TRUE(copied.error().opened);
    EXPECT_EQ(bytes(), kOld);
    EXPECT_EQ(namesIn(temp / "data"), "7.csv");
}

TEST_F(EveryCall, ATargetThatIsBusyForAWhileIsReplacedAndNotWrittenInto) {
    for (const int busy : {EBUSY, EEXIST, ETXTBSY}) {
        temp.write("data/7.csv", kOld);
        const auto before = test::statOf(file).st_ino;
        FailingFiles disk;
        disk.failAt(1, {busy, false}, "rename");
        EXPECT_TRUE(saveWholeFile(file, kNew)) << busy;
        EXPECT_EQ(disk.waits(), 1) << busy;
        EXPECT_EQ(bytes(), kNew) << busy;
        EXPECT_NE(test::statOf(file).st_ino, before) << busy;
    }
}

// About four seconds, of which this test waits none.
TEST_F(EveryCall, ATargetThatStaysBusyIsLeftWholeBehindAboutFourSeconds) {
    for (const int busy : {EBUSY, EEXIST, ETXTBSY}) {
        temp.write("data/7.csv", kOld);
        FailingFiles disk;
        disk.refuse("rename", busy);
        EXPECT_FALSE(saveWholeFile(file, kNew)) << busy;
        EXPECT_GE(disk.waited(), std::chrono::milliseconds(3900)) << busy;
        EXPECT_LE(disk.waited(), std::chrono::milliseconds(4100)) << busy;
        EXPECT_EQ(bytes(), kOld) << busy;
        EXPECT_EQ(namesIn(temp / "data"), "7.csv") << busy;
    }
}

TEST_F(EveryCall, AShareThatFailsAltogetherIsNotWrittenInto) {
    temp.write("data/7.csv", kOld);
    const auto before = test::statOf(file).st_ino;
    FailingFiles disk;
    disk.refuse("rename", EIO);
    EXPECT_FALSE(saveWholeFile(file, kNew));
    EXPECT_EQ(disk.waits(), 0) << "only a busy target is waited for";
    EXPECT_EQ(bytes(), kOld);
    EXPECT_EQ(test::statOf(file).st_ino, before);
    EXPECT_EQ(namesIn(temp / "data"), "7.csv");
}

TEST_F(EveryCall, ThatIsInterruptedIsMadeAgain) {
    for (const char* call : {"open", "write", "sync"}) {
        temp.write("data/7.csv", kOld);
        FailingFiles disk;
        disk.failAt(1, {EINTR}, call);
        EXPECT_TRUE(saveWholeFile(file, kNew)) << call;
        EXPECT_TRUE(disk.met()) << call;
        EXPECT_EQ(bytes(), kNew) << call;
    }
}

TEST_F(EveryCall, OfAMediumThatCannotSynchroniseIsNoFailure) {
    for (const int number : {EINVAL, EROFS}) {
        temp.write("data/7.csv", kOld);
        FailingFiles disk;
        disk.refuse("sync", number);
        EXPECT_TRUE(saveWholeFile(file, kNew)) << number;
        EXPECT_EQ(bytes(), kNew) << number;
    }
}

}  // namespace
}  // namespace quillon
