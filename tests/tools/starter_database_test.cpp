// SPDX-License-Identifier: MIT
// The content of the starter database. The heads are made from the layouts of the formats; a folder of real ones is
// judged as well when the environment variable QUILLON_SAMPLES names it.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

#include "dbcheck/command.h"
#include "dbcheck/damage.h"
#include "dbcheck/database_lint.h"
#include "dbcheck/extension_table.h"
#include "dbcheck/score.h"
#include "healthy_heads.h"
#include "platform/whole_file.h"
#include "testing/report_messages.h"
#include "testing/sector_markers.h"
#include "testing/skip_list.h"
#include "text/fields.h"

namespace quillon {
namespace {

const HeaderDatabase& starter() {
    static const auto database = readHeaderDatabase(QUILLON_STARTER);
    static const HeaderDatabase none;
    EXPECT_TRUE(database) << (database ? "" : database.error().text);
    return database ? *database : none;
}

// The bytes of a starter file; empty, with a failure, when it cannot be read.
std::string starterFile(const std::string& name) {
    auto bytes = readWholeFile(NativePath(QUILLON_STARTER) / name);
    EXPECT_TRUE(bytes) << name;
    return bytes ? *bytes : std::string();
}

bool accepts(const std::string& extension, const Sample& sample) {
    const auto terms = starter().terms.find(extension);
    return terms != starter().terms.end() && firstFit(terms->second, sample.folded);
}

// The name that a common header gives; empty for none.
std::u16string commonName(const Sample& sample) {
    for (const auto& record : starter().commonList.records()) {
        if (record.term.match(sample.folded) == MatchResult::Yes)
            return record.description.value_or(u"");
    }
    return {};
}

TEST(StarterDatabase, IsCleanAndKnowsAtLeast600Extensions) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runDbcheck({QUILLON_STARTER, "--min-extensions", "600"}, out, err), kDbcheckGood) << err.str();
}

// An installation that has no list of its own goes by those of the program.
TEST(StarterDatabase, ItsMarkersAreThoseThatServeWithoutAList) {
    const std::string bytes = starterFile("Settings/BadSectors.dat");
    SectorMarkers markers;
    markers.assign(splitLines(bytes));
    EXPECT_EQ(markers.all(), SectorMarkers::published().all());
}

TEST(StarterDatabase, AcceptsTheVariantsOfCommonFormats) {
    for (const auto& sample : test::healthyHeads()) EXPECT_TRUE(accepts(sample.extension, sample)) << sample.path;
}

TEST(StarterDatabase, TermsOfOtherFormatsDoNotAcceptThem) {
    const auto score = scoreSamples(starter(), test::healthyHeads());
    EXPECT_LT(score.falseAcceptPercent(), 0.05);
}

TEST(StarterDatabase, RejectsAndNamesForeignContent) {
    struct Case {
        const char* extension;
        std::string bytes;
        const char16_t* name;
    };
    const std::string compound = hexToText("D0CF11E0A1B11AE1");
    const Case cases[] = {
        {"jpg", hexToText("89504E470D0A1A0A"), u"PNG picture"},
        {"png", hexToText("FFD8FFE000104A464946"), u"JPEG picture"},
        {"doc", hexToText("FFD8FFE000104A464946"), u"JPEG picture"},
        {"jpg", "%PDF-1.4\n", u"PDF document"},
        {"pdf", compound, u"Office 97-2003 or other OLE document"},
        {"pst", "<html><body>", u"HTML page"},
    };
    for (const auto& one : cases) {
        const auto sample = test::headOf(one.extension, "foreign", one.bytes);
        EXPECT_FALSE(accepts(one.extension, sample)) << one.extension;
        EXPECT_EQ(commonName(sample), one.name) << one.extension;
    }
}

// A common header counts as recovered: what tells of damage and not of a format may not be one.
TEST(StarterDatabase, WhatOverwroteAFileIsNoCommonHeader) {
    const std::string overwritten[] = {
        std::string(512, '\0'),
        std::string(512, '\xFF'),
        "BAD SECTOR BAD SECTOR ",
        hexToText("46494C453000030011223344"),  // a record of NTFS about a file,
        hexToText("494E445828000900112233"),    // and about a folder
    };
    for (const auto& bytes : overwritten) {
        const auto sample = test::headOf("doc", "overwritten", bytes);
        EXPECT_EQ(commonName(sample), u"") << bytes.substr(0, 8);
        for (const char* const extension : {"doc", "nef", "jpg", "png", "mp4", "mp3", "xlsx", "tif"})
            EXPECT_FALSE(accepts(extension, sample)) << extension << ": " << bytes.substr(0, 8);
    }
}

// At most so many percent of the heads that layouts make, and of real ones, count as recovered behind each damage. What
// is left are formats whose mark may stand at any place, and marks behind the first 16 bytes.
struct DamageLimit {
    const char* damage;
    double made;
    const char* real;
};
constexpr DamageLimit kDamageLimits[] = {{"zeros", 0, "0"},          {"ff", 0, "0"},         {"random", 0, "0"},
                                         {"text", 0, "0"},           {"shift-1", 8.9, "13"}, {"shift-16", 13.1, "14.7"},
                                         {"shift-100", 8.9, "12.7"}, {"shift-512", 0, "0"},  {"gone-16", 18.4, "20.8"},
                                         {"foreign", 0, "0.1"}};

TEST(StarterDatabase, WreckedHeadsAreHardlyTakenForRecovered) {
    const auto scores = scoreDamage(starter(), test::healthyHeads());
    ASSERT_EQ(scores.size(), std::size(kDamageLimits));
    for (std::size_t i = 0; i < scores.size(); ++i) {
        ASSERT_EQ(scores[i].kind.name, kDamageLimits[i].damage);
        EXPECT_LE(scores[i].recoveredPercent(), kDamageLimits[i].made) << kDamageLimits[i].damage;
        EXPECT_GT(scores[i].samples, 100U);
    }
}

TEST(StarterDatabase, EveryTermAtAnyPlaceHasItsReason) {
    EXPECT_FALSE(starter().anywhere.empty()) << "the lint asks for reasons where there is a table of them";
}

TEST(StarterDatabase, PlainTextWithoutAHeaderHasNoTermFile) {
    for (const char* const extension : {"txt", "csv", "log", "ini", "js", "css", "c", "py", "bat", "json", "sql"})
        EXPECT_FALSE(starter().terms.contains(extension)) << extension;
}

TEST(StarterDatabase, ReportMessagesAreTheFallbackTexts) {
    const auto bytes = starterFile("Settings/Errors.dat");
    const auto lines = splitLines(bytes);
    const auto fallback = ReportMessages::fallback();
    ASSERT_EQ(lines.size(), kMessageCount);
    for (std::size_t i = 0; i < kMessageCount; ++i) EXPECT_EQ(pageBytesToUtf16(lines[i]), fallback.values[i]);
}

TEST(StarterDatabase, SkipListLeavesCustomersFilesAlone) {
    std::vector<std::u16string> lines;
    const auto bytes = starterFile("Settings/SkipList.dat");
    for (const auto line : splitLines(bytes)) lines.push_back(pageBytesToUtf16(line));
    SkipList list;
    list.assign(lines);
    for (const char16_t* const path :
         {u"/mnt/c/Users/Ann/Pictures/Thumbs.db", u"/mnt/c/pagefile.sys", u"/mnt/c/Windows/System32/ntdll.dll",
          u"/mnt/c/System Volume Information/tracking.log", u"/mnt/c/$Recycle.Bin/S-1-5-21/$IABC12.jpg",
          u"/mnt/mac/Users/ann/.DS_Store", u"C:\\Windows\\WinSxS\\x\\y.dll"}) {
        EXPECT_TRUE(list.matches(path));
    }
    for (const char16_t* const path :
         {u"/mnt/c/Users/Ann/Pictures/holiday.jpg", u"/mnt/c/$Recycle.Bin/S-1-5-21/$RABC12.jpg",
          u"/mnt/c/Windows/Fonts/own.ttf", u"/mnt/c/Users/Ann/Documents/windows/system.doc",
          u"/mnt/c/Program Files/Accounts/books.mdb", u"/mnt/mac/Users/ann/Library/Mail/inbox.mbox",
          u"/mnt/c/lost+found/file001.jpg", u"/mnt/c/FOUND.000/FILE0000.CHK"}) {
        EXPECT_FALSE(list.matches(path));
    }
}

TEST(StarterDatabase, ThePageHoldsTheTableOfToday) {
    const auto page = readWholeFile(QUILLON_DATABASE_PAGE);
    ASSERT_TRUE(page);
    EXPECT_NE(page->find(extensionTable(starter())), std::string::npos)
        << "docs/database.md ends with the output of dbcheck data/starter --table";
}

TEST(StarterDatabase, JudgesAFolderOfRealHeads) {
    const char* const folder = std::getenv("QUILLON_SAMPLES");
    if (folder == nullptr)
        GTEST_SKIP() << "QUILLON_SAMPLES names no folder of sample heads";
    std::ostringstream out;
    std::vector<std::string> arguments = {
        QUILLON_STARTER, "--samples",      folder, "--min-good",  "98.4", "--max-false-accepts",
        "0.5",           "--min-rejected", "95",   "--min-named", "50",   "--damage"};
    for (const auto& limit : kDamageLimits)
        arguments.insert(arguments.end(), {"--max-recovered", limit.damage, limit.real});
    const int status = runDbcheck(arguments, out, std::cerr);
    EXPECT_EQ(status, kDbcheckGood) << out.str();
}

}  // namespace
}  // namespace quillon
