// SPDX-License-Identifier: MIT
// Temporary files of killed saves go under Kept when nobody can need them any more.
#include "app/save_litter.h"

#include <gtest/gtest.h>

#include "app/app_fixture.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "support/fake_surroundings.h"

namespace quillon {
namespace {

constexpr std::int64_t kDay = 24LL * 60 * 60;

class SaveLitterTest : public test::AppFixture {
protected:
    SaveLitterTest() {
        usePaths();
        makeFolder("local/Database");
    }

    // The name of a save of this process, or the same with another number of the process, or of another computer.
    static std::string nameOf(const std::string& host, const std::string& process) {
        std::string name = temporaryName();
        const auto counter = name.rfind('-');
        const auto time = name.rfind('-', counter - 1);
        const auto number = name.rfind('-', time - 1);
        const std::string own = name.substr(0, number);
        return (host.empty() ? own : ".quillon-save-" + host) + "-" +
               (process.empty() ? name.substr(number + 1, time - number - 1) : process) + name.substr(time);
    }
    NativePath leave(const std::string& name, std::int64_t age) {
        const auto file = temp.write("local/Database/" + name, "half a fi");
        const FileTime now = fileTimeNow();
        EXPECT_TRUE(setModificationTime(file, {now.seconds - age, 0}));
        return file;
    }

    test::FakeClock clock;
    KeptFiles kept{installation, clock, KeptBy::Rescue};
    const std::string gone_ = "2147483646";  // above any number that a system gives
};

TEST_F(SaveLitterTest, LitterOlderThanADayWhoseProcessIsGoneIsKept) {
    const std::string name = nameOf("", gone_);
    const auto file = leave(name, kDay + 60);
    EXPECT_EQ(moveSaveLitterAway({temp / "local/Database", temp / "missing", {}}, kept), 1U);
    EXPECT_FALSE(pathExists(file));
    EXPECT_EQ(temp.read("local/Kept/2026-11-15 10.20.30/Database/" + name), "half a fi");
}

TEST_F(SaveLitterTest, WhatSomebodyMayStillNeedStays) {
    leave(nameOf("", gone_), kDay - 60);
    leave(nameOf("", ""), 2 * kDay);
    leave(nameOf("another-computer", gone_), 2 * kDay);
    leave(".quillon-save-", 2 * kDay);
    leave(".quillon-save-x-y-z", 2 * kDay);
    leave("jpg.dat", 2 * kDay);
    makeFolder("local/Database/" + nameOf("", gone_));
    EXPECT_EQ(moveSaveLitterAway({temp / "local/Database"}, kept), 0U);
    EXPECT_EQ(listEntries(temp / "local/Database")->size(), 7U);
}

}  // namespace
}  // namespace quillon
