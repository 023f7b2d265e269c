// SPDX-License-Identifier: MIT
// What is asked of a volume that cannot say of all its files at once that they are on the medium.
#include "platform/volume_syncs.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <thread>

#include <gtest/gtest.h>

#include "support/failing_files.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using test::FailingFiles;
using test::TempFolder;

class VolumeSyncsTest : public testing::Test {
protected:
    void SetUp() override {
        disk.refuse("syncVolume", ENOSYS);
        for (const char* name : {"a", "b"}) std::filesystem::create_directory(temp / name);
    }
    void begin(int count) {
        ArrivalFolder folder;
        for (int i = 0; i < count; ++i) {
            auto file = folder.begin((temp / "a" / std::to_string(i)).native(), 0600);
            ASSERT_TRUE(file);
            files.push_back(*std::move(file));
        }
        for (const ArrivingFile& file : files) wish.files.push_back(&file);
    }
    void name(const std::string& path) { paths.push_back(std::make_unique<std::string>((temp / path).native())); }
    VolumeSyncs::Answer sync() {
        for (const auto& path : paths) wish.named.push_back(path.get());
        return syncs.sync(wish);
    }
    static std::ptrdiff_t failed(const std::vector<Result<void>>& results) {
        return std::ranges::count_if(results, [](const Result<void>& result) { return !result; });
    }

    TempFolder temp;
    FailingFiles disk;
    VolumeSyncs syncs;
    std::vector<ArrivingFile> files;
    std::vector<std::unique_ptr<std::string>> paths;
    VolumeSyncs::Wish wish;
};

TEST_F(VolumeSyncsTest, AFolderOfManyNamesIsAskedForOnce) {
    begin(1);
    int syncsMade = 0;
    disk.ahead("sync", [&] { ++syncsMade; });
    for (const char* path : {"b/1", "a/2", "b/3", "a/4", "b/5"}) name(path);
    EXPECT_EQ(failed(sync().named), 0);
    EXPECT_EQ(syncsMade, 1 + 2) << "the file, and the two folders";
}

TEST_F(VolumeSyncsTest, AFolderThatFailsIsToldOfEachNameInItAndOfNoOther) {
    begin(1);
    for (const char* path : {"b/1", "a/2", "b/3", "a/4"}) name(path);
    disk.failAt(3, {EIO}, "sync");  // behind the file and the first folder
    const auto named = sync().named;
    std::vector<bool> well;
    for (const auto& result : named) well.push_back(result.has_value());
    EXPECT_EQ(well, (std::vector<bool>{false, true, false, true}));
    EXPECT_NE(named.front().error().text.find((temp / "b").native()), std::string::npos) << named.front().error().text;
}

// A quick medium is asked by one thread, in order; behind a slow answer many are under way at once, as the wait for one
// is the wait for all.
TEST_F(VolumeSyncsTest, AMediumThatLetsWaitIsAskedForManyFilesAtOnce) {
    constexpr int kAtOnce = 16;
    begin(3 * kAtOnce);
    std::mutex mutex;
    std::condition_variable came;
    int asked = 0;
    std::atomic<bool> together = true;
    disk.ahead("sync", [&] {
        std::unique_lock lock(mutex);
        if (++asked == 1) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));  // this is the medium
            return;
        }
        came.notify_all();
        if (!came.wait_for(lock, std::chrono::seconds(20), [&] { return asked > kAtOnce; }))
            together = false;
    });
    EXPECT_EQ(failed(sync().files), 0);
    EXPECT_EQ(asked, 3 * kAtOnce);
    EXPECT_TRUE(together);
}

TEST_F(VolumeSyncsTest, OfManyFilesAtOnceTheBadOneAloneFails) {
    begin(40);
    std::atomic<int> asked = 0;
    disk.ahead("sync", [&] {
        if (++asked == 1)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
    });
    disk.failAt(17, {EIO}, "sync");
    EXPECT_EQ(failed(sync().files), 1);
    EXPECT_EQ(asked, 40);
}

}  // namespace
}  // namespace quillon
