// SPDX-License-Identifier: MIT
// The preferences beside the settings record: every value comes back, what is not known stays, and a file that cannot
// be read is not written over.
#include "app/preferences.h"

#include <array>
#include <limits>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace quillon {
namespace {

using namespace std::string_literals;

constexpr Preference<bool> kFlag{"test.flag"};
constexpr Preference<std::int64_t> kNumber{"test.number"};
constexpr Preference<std::string> kText{"test.text"};
constexpr Preference<NativePath> kPath{"test.path"};

std::string everyByte() {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(static_cast<unsigned char>(byte));
    return bytes;
}

TEST(Preferences, AValueStandsReadableInItsLine) {
    const std::array<std::pair<std::string, std::string>, 9> cases = {{
        {"", ""},
        {"/srv/lab 7/a=b", "/srv/lab 7/a=b"},
        {"/srv/caf\xC3\xA9", "/srv/caf\xC3\xA9"},
        {"100%", "100%25"},
        {" led and closed ", "%20led and closed%20"},
        {" ", "%20"},
        {"two\r\nlines", "two%0D%0Alines"},
        {"bad\xFF\xC3", "bad%FF%C3"},
        {"\x7F\xC2\x85", "%7F%C2%85"},
    }};
    for (const auto& [value, line] : cases) {
        Preferences preferences;
        preferences.set(kText, value);
        EXPECT_EQ(preferences.fileBytes(), "test.text=" + line + "\n");
        EXPECT_EQ(Preferences(preferences.fileBytes()).get(kText), value) << line;
    }
}

TEST(Preferences, APathOfAnyBytesComesBack) {
    const NativePath path("/" + everyByte());
    Preferences preferences;
    preferences.set(kPath, path);
    EXPECT_EQ(Preferences(preferences.fileBytes()).get(kPath)->native(), path.native());
}

TEST(Preferences, FlagsAndNumbersComeBack) {
    for (const bool flag : {true, false}) {
        Preferences preferences;
        preferences.set(kFlag, flag);
        EXPECT_EQ(preferences.fileBytes(), flag ? "test.flag=yes\n" : "test.flag=no\n");
        EXPECT_EQ(Preferences(preferences.fileBytes()).get(kFlag), flag);
    }
    for (const std::int64_t number : {std::int64_t{0}, std::int64_t{-7}, std::numeric_limits<std::int64_t>::max()}) {
        Preferences preferences;
        preferences.set(kNumber, number);
        EXPECT_EQ(Preferences(preferences.fileBytes()).get(kNumber), number);
    }
}

TEST(Preferences, WhatIsNoSuchValueCountsAsNotThere) {
    for (const char* value : {"", "maybe", "YES", "1", "yes%00"})
        EXPECT_FALSE(Preferences("test.flag="s + value).get(kFlag)) << value;
    for (const char* value : {"", "12 m", "0x10", "1.5", "99999999999999999999"})
        EXPECT_FALSE(Preferences("test.number="s + value).get(kNumber)) << value;
    const Preferences empty;
    EXPECT_FALSE(empty.get(kFlag) || empty.get(kNumber) || empty.get(kText) || empty.get(kPath));
}

TEST(Preferences, ALineWrittenByHandIsRead) {
    EXPECT_EQ(Preferences("\r\n # no\r\n  test.text =  a b \r\n").get(kText), "a b");
    EXPECT_EQ(Preferences("test.text=50% of 4%2 %zz %").get(kText), "50% of 4%2 %zz %");
    EXPECT_EQ(Preferences("test.text=%2f%2F").get(kText), "//");
    EXPECT_EQ(Preferences("test.text=first\ntest.text=last\n").get(kText), "last");
    EXPECT_FALSE(Preferences("#test.text=a\n;test.text=b\ntest.textual=c\nTEST.TEXT=d\n").get(kText));
}

TEST(Preferences, WhatIsNotKnownStaysInItsPlace) {
    const std::string before = "# by hand\n[section]\n\nother.name=%41 %\ntest.text=old\n;end\n";
    Preferences preferences(before);
    EXPECT_EQ(preferences.fileBytes(), before);
    preferences.set(kText, "new");
    preferences.set(kFlag, true);
    EXPECT_EQ(preferences.fileBytes(),
              "# by hand\n[section]\n\nother.name=%41 %\ntest.text=new\n;end\ntest.flag=yes\n");
    preferences.remove(kText.name);
    EXPECT_FALSE(preferences.get(kText));
    EXPECT_EQ(preferences.fileBytes(), "# by hand\n[section]\n\nother.name=%41 %\n;end\ntest.flag=yes\n");
}

TEST(Preferences, AMissingFileHasNoneAndAChangeMakesIt) {
    const test::TempFolder folder;
    EXPECT_EQ(readPreferences(folder.path()).value(), Preferences());
    ASSERT_TRUE(changePreferences(folder.path(), [](Preferences& p) { p.set(kNumber, 3); }));
    EXPECT_EQ(folder.read(kPreferencesFileName), "test.number=3\n");
}

TEST(Preferences, AChangeKeepsWhatAnotherHasStoredMeanwhile) {
    const test::TempFolder folder;
    ASSERT_TRUE(readPreferences(folder.path()));
    folder.write(kPreferencesFileName, "another.name=x\n");
    ASSERT_TRUE(changePreferences(folder.path(), [](Preferences& p) { p.set(kFlag, false); }));
    EXPECT_EQ(folder.read(kPreferencesFileName), "another.name=x\ntest.flag=no\n");
}

TEST(Preferences, AChangeThatChangesNothingWritesNothing) {
    const test::TempFolder folder;
    const auto old = "test.flag = yes\r\n";  // a save would write it in its own form
    folder.write(kPreferencesFileName, old);
    ASSERT_TRUE(changePreferences(folder.path(), [](Preferences& p) { p.set(kFlag, true); }));
    EXPECT_EQ(folder.read(kPreferencesFileName), old);
}

TEST(Preferences, AFileThatCannotBeReadIsNotWrittenOver) {
    const test::TempFolder folder;
    const std::string tooMuch(1024UL * 1024 + 1, '#');
    folder.write(kPreferencesFileName, tooMuch);
    EXPECT_FALSE(readPreferences(folder.path()));
    EXPECT_FALSE(changePreferences(folder.path(), [](Preferences& p) { p.set(kFlag, true); }));
    EXPECT_EQ(folder.read(kPreferencesFileName), tooMuch);
}

}  // namespace
}  // namespace quillon
