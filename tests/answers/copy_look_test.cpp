// SPDX-License-Identifier: MIT
#include "answers/copy_look.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

using Findings = std::vector<std::string>;

CopyTask task(const std::string& name) {
    return {1, "/source/" + name, "/target/source/" + name};
}

TEST(CopyLook, NothingIsFoundWhereAllWillGoWell) {
    CopyLook look({"ext4", 1000}, "/target");
    look.add(task("a"), 600);
    look.add(task("b"), 400);
    EXPECT_EQ(look.findings(), Findings{});
    EXPECT_EQ(look.bytes(), 1000);
    EXPECT_EQ(CopyLook({"", std::nullopt}, "/target").findings(), Findings{}) << "what is not known is no finding";
}

TEST(CopyLook, TooLittleRoomIsTold) {
    CopyLook look({"ext4", 999}, "/target");
    look.add(task("a"), 1'000);
    EXPECT_EQ(look.findings(), Findings{"1,000 bytes are needed, and 999 are free on the target"});
}

TEST(CopyLook, FilesThatFatCannotHoldAreTold) {
    constexpr std::int64_t kMost = 4'294'967'295;
    for (const char* kind : {"exfat", "ext4"}) {
        CopyLook look({kind, std::nullopt}, "/target");
        look.add(task("film"), kMost + 1);
        EXPECT_EQ(look.findings(), Findings{}) << kind;
    }
    CopyLook look({"vfat", std::nullopt}, "/target");
    look.add(task("a"), kMost);
    EXPECT_EQ(look.findings(), Findings{});
    look.add(task("film"), kMost + 1);
    EXPECT_EQ(look.findings(), Findings{"1 files are larger than the 4 GB that the target can hold: /source/film"});
}

TEST(CopyLook, NamesAreComparedWithWhatTargetAndWindowsCanHold) {
    for (const char* kind : {"ext4", "ntfs3"}) {
        const bool isWindows = std::string_view(kind) == "ntfs3";
        CopyLook look({kind, std::nullopt}, "/target ");  // the target's own name is no copy's
        for (const char* name : {"what?", "CON", "sub./x"})
            look.add({1, "/s", std::string("/target /source/") + name}, 1);
        EXPECT_EQ(look.findings(),
                  Findings{std::string("3 names are none that ") +
                           (isWindows ? "the target can hold" : "Windows can open") + ": source/what? ..."})
            << kind;
    }
}

TEST(CopyLook, NamesThatDifferInCaseAloneAreTold) {
    CopyLook look({"vfat", std::nullopt}, "/target");
    for (const char* name : {"a.txt", "A.TXT", "b", "caf\xC3\xA9", "CAF\xC3\x89"}) look.add(task(name), 1);
    EXPECT_EQ(
        look.findings(),
        Findings{
            "2 names differ from another one only in case, which the target takes for the same: source/A.TXT ..."});
}

}  // namespace
}  // namespace quillon
