// SPDX-License-Identifier: MIT
// Dates and times as text: the plain form, the form of a locale, and the ten characters of a list's row.
#include "platform/dates.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <utility>

#include <gtest/gtest.h>

#include "support/temp_folder.h"

// The C library keeps the list of folders that LOCPATH names for ever.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name that the leak checker asks for
extern "C" const char* __lsan_default_suppressions() {
    return "leak:__argz_add_sep";
}

namespace quillon {
namespace {

const LocalTime kMorning{2026, 11, 15, 10, 20, 30, 0, 318};
const LocalTime kMidnight{2026, 11, 15, 0, 0, 0, 0, 318};
const LocalTime kFirstSecond{2026, 1, 2, 0, 0, 1, 5, 1};

TEST(Dates, ThePlainFormIsDayMonthYear) {
    for (const char* name : {"C", "POSIX", "C.UTF-8", "C.utf8", "no_SUCH.locale"}) {
        const DateTexts texts(name);
        EXPECT_EQ(texts.date(kMorning), "15/11/2026") << name;
        EXPECT_EQ(texts.time(kMorning), "10:20:30") << name;
        EXPECT_EQ(texts.general(kMorning), "15/11/2026 10:20:30") << name;
        EXPECT_EQ(texts.firstTen(kMorning), u"15/11/2026") << name;
    }
    EXPECT_EQ(DateTexts("C").date(kFirstSecond), "02/01/2026");
}

TEST(Dates, AtMidnightTheGeneralFormIsTheDateAlone) {
    const DateTexts texts("C");
    EXPECT_EQ(texts.general(kMidnight), "15/11/2026");
    EXPECT_EQ(texts.general(kFirstSecond), "02/01/2026 00:00:01");
    EXPECT_EQ(texts.time(kMidnight), "00:00:00");
}

// Makes a locale with these forms for the time of a test, since a machine may have none but C.
class MadeLocale {
public:
    MadeLocale(const std::string& dateForm, const std::string& timeForm) {
        temp_.write(
            "made.src",
            "comment_char %\nescape_char /\nLC_TIME\n"
            "abday \"Sun\";\"Mon\";\"Tue\";\"Wed\";\"Thu\";\"Fri\";\"Sat\"\n"
            "day \"Sun\";\"Mon\";\"Tue\";\"Wed\";\"Thu\";\"Fri\";\"Sat\"\n"
            "abmon \"Jan\";\"Feb\";\"Mar\";\"Apr\";\"May\";\"Jun\";\"Jul\";\"Aug\";\"Sep\";\"Oct\";\"Nov\";\"Dec\"\n"
            "mon \"Jan\";\"Feb\";\"Mar\";\"Apr\";\"May\";\"Jun\";\"Jul\";\"Aug\";\"Sep\";\"Oct\";\"Nov\";\"Dec\"\n"
            "d_t_fmt \"" +
                dateForm + " " + timeForm + "\"\nd_fmt \"" + dateForm + "\"\nt_fmt \"" + timeForm +
                "\"\nam_pm \"AM\";\"PM\"\nt_fmt_ampm \"%I:%M:%S %p\"\nEND LC_TIME\n");
        const std::string make = "localedef -c -i '" + (temp_ / "made.src").native() + "' '" +
                                 (temp_ / "made").native() + "' >/dev/null 2>&1";
        passOver(std::system(make.c_str()), "it warns of the categories that are left out; the file tells");
        usable = std::filesystem::exists(temp_ / "made/LC_TIME");
        ::setenv("LOCPATH", temp_.path().c_str(), 1);
    }

    ~MadeLocale() { ::unsetenv("LOCPATH"); }
    MadeLocale(const MadeLocale&) = delete;
    MadeLocale& operator=(const MadeLocale&) = delete;

    bool usable = false;

private:
    test::TempFolder temp_;
};

TEST(Dates, ALocaleHasItsOwnForm) {
    const MadeLocale made("%Y.%m.%d", "%H-%M-%S");
    if (!made.usable)
        GTEST_SKIP() << "localedef is missing: no locale can be made";
    const DateTexts texts("made");
    EXPECT_EQ(texts.date(kMorning), "2026.11.15");
    EXPECT_EQ(texts.time(kMorning), "10-20-30");
    EXPECT_EQ(texts.general(kMorning), "2026.11.15 10-20-30");
}

TEST(Dates, ShortDatesRunIntoTheTime) {
    const MadeLocale made("%d.%m.%y", "%H:%M:%S");
    if (!made.usable)
        GTEST_SKIP() << "localedef is missing: no locale can be made";
    const DateTexts texts("made");
    EXPECT_EQ(texts.firstTen(kMorning), u"15.11.26 1");
    EXPECT_EQ(texts.firstTen(kMidnight), u"15.11.26");
}

TEST(Dates, LongDatesAreCutAtTenCharacters) {
    const MadeLocale made("%A %d.%m.%Y", "%H:%M:%S");
    if (!made.usable)
        GTEST_SKIP() << "localedef is missing: no locale can be made";
    EXPECT_EQ(DateTexts("made").firstTen(kMorning), u"Sun 15.11.");
}

TEST(Dates, ACommaOfADateSplitsNoRow) {
    const MadeLocale made("%d,%m,%Y", "%H:%M:%S");
    if (!made.usable)
        GTEST_SKIP() << "localedef is missing: no locale can be made";
    EXPECT_EQ(DateTexts("made").firstTen(kMorning), u"15 11 2026");
}

TEST(Dates, TheEnvironmentNamesTheLocale) {
    const MadeLocale made("%Y.%m.%d", "%H:%M:%S");
    if (!made.usable)
        GTEST_SKIP() << "localedef is missing: no locale can be made";
    const char* all = std::getenv("LC_ALL");
    const std::string before = all != nullptr ? all : "";
    ::setenv("LC_ALL", "", 1);
    ::setenv("LC_TIME", "made", 1);
    EXPECT_EQ(DateTexts().date(kMorning), "2026.11.15") << "an empty variable does not count";
    ::setenv("LC_ALL", "C", 1);
    EXPECT_EQ(DateTexts().date(kMorning), "15/11/2026") << "LC_ALL goes first";
    ::unsetenv("LC_TIME");
    ::setenv("LC_ALL", before.c_str(), 1);
}

TEST(Dates, AMomentFallsIntoItsPartsInLocalTime) {
    const LocalTime time = toLocalTime(1794738030);  // the tests run in the zone UTC
    EXPECT_EQ(time.year, 2026);
    EXPECT_EQ(time.month, 11);
    EXPECT_EQ(time.day, 15);
    EXPECT_EQ(time.hour, 10);
    EXPECT_EQ(time.minute, 20);
    EXPECT_EQ(time.second, 30);
    EXPECT_EQ(time.weekday, 0);
    EXPECT_EQ(time.yearDay, 318);
    EXPECT_EQ(time.secondOfDay(), 37230);
    EXPECT_EQ(toLocalTime(0).year, 1970);
    EXPECT_EQ(toLocalTime(-1).year, 1969);
}

TEST(Dates, SecondsAreShownAsAClock) {
    const std::array<std::pair<std::int64_t, const char*>, 7> table = {{
        {0, "00:00:00"},
        {59, "00:00:59"},
        {3661, "01:01:01"},
        {86399, "23:59:59"},
        {86400, "00:00:00"},
        {-1, "23:59:59"},
        {-86401, "23:59:59"},
    }};
    for (const auto& [seconds, text] : table) EXPECT_EQ(clockText(seconds), text) << seconds;
}

TEST(Dates, TheClockNeverRunsBackwards) {
    const SystemClock clock;
    std::int64_t last = clock.milliseconds();
    for (int i = 0; i < 10000; ++i) {
        const std::int64_t now = clock.milliseconds();
        ASSERT_GE(now, last);
        last = now;
    }
    EXPECT_GE(clock.now().year, 2024);
}

}  // namespace
}  // namespace quillon
