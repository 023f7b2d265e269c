// SPDX-License-Identifier: MIT
// Every save of many files and of lists, on a disk of which every call fails once.
#include <algorithm>

#include "archive/zip_bytes.h"
#include "archive/zip_writer.h"
#include "job/copy_journal.h"
#include "job/job.h"
#include "platform/folders.h"
#include "programs/save_table.h"
#include "setup/database_backup.h"
#include "setup/default_installation.h"
#include "setup/shared_database.h"
#include "support/list_bytes.h"
#include "testing/skip_list.h"
#include "viewer/list_viewer.h"

namespace quillon {
namespace {

using test::Bytes;
using test::FailingFiles;
using test::Fault;
using test::Place;
using test::SaveTable;

class NoScreen final : public ScreenHost {
public:
    void showState() override {}
    void beep() override {}
    void focus(const char* /*control*/) override {}
};

TEST_F(SaveTable, ListThatIsCopied) {
    disturb({.name = "list copy",
             .before = {{"app/tFile.csv", "raw rows"}, {"local/7.csv", "older rows"}},
             .run =
                 [](Place& place) {
                     Job job(place.installation, place.surroundings);
                     job.state.options.jobId = "7";
                     return job.lists().copyRawToFinal(ListEnd::Whole, place.surroundings.loop).has_value();
                 },
             .keepsOld = true,
             .inParts = true});
}

TEST_F(SaveTable, ListOfAJob) {
    for (const bool overOld : {false, true}) {
        disturb({.name = overOld ? "final list over an old one" : "final list",
                 .before = overOld ? Bytes{{"local/7.csv", test::utf16Bytes(u"/old row\r\n")}} : Bytes(),
                 .run =
                     [](Place& place) {
                         Job job(place.installation, place.surroundings);
                         job.state.options.jobId = "7";
                         auto list = job.lists().createFinal();
                         return list && list->write(ListRow(u"/row 1")) && list->write(ListRow(u"/row 2")) &&
                                job.lists().finishFinal(*list, ListEnd::Whole, place.surroundings.loop);
                     },
                 .keepsOld = true,
                 .inParts = true,
                 .streamed = "local/7.csv"});
    }
}

std::u16string row(const NativePath& file, std::u16string_view result) {
    return file.u16string() + u",15/11/2026, 600, 32;Ab9x," + std::u16string(result) + u"\r\n";
}

TEST_F(SaveTable, ListThatIsTestedAgain) {
    const std::string head = "QLX!" + std::string(596, 'x');
    const auto list = [this](std::u16string_view result) {
        std::u16string rows;
        for (const char* name : {"source/a.qlx", "source/b.qlx", "source/c.qlx"}) rows += row(temp / name, result);
        return test::utf16Bytes(rows);
    };
    disturb({.name = "retest",
             .before = {{"local/J1.csv", list(u"Header Corrupt")},
                        {"source/a.qlx", head},
                        {"source/b.qlx", head},
                        {"source/c.qlx", head},
                        {"local/Database/qlx.dat", "1,QLX!,T\r\n"},
                        {"local/Settings/Errors.dat", "Header OK\r\nHeader Corrupt\r\n"}},
             .run =
                 [](Place& place) {
                     Job job(place.installation, place.surroundings);
                     job.messages = ReportMessages::fallback();
                     job.state.options.jobId = "J1";
                     NoScreen screen;
                     ListViewer viewer(viewedJob(job), screen);
                     viewer.load();
                     const auto& all = viewer.state.categories;
                     const auto corrupt = std::ranges::find(all, job.messages[Grade::Corrupt]);
                     if (corrupt == all.end())
                         return false;
                     viewer.chooseCategory(static_cast<int>(corrupt - all.begin()));
                     viewer.filter();
                     if (viewer.state.rows.count() != 3)
                         return false;
                     viewer.selectRow(0);
                     viewer.retest();
                     return place.dialogs.titles.empty() && viewer.state.rows.count() == 0;
                 },
             .keepsOld = true,
             .inParts = true,
             .shared = false,
             .streamed = "local/J1.csv"});
}

TEST_F(SaveTable, Archive) {
    const auto oldArchive = [](const NativePath& root) {
        test::writeZip(root / "zips/1234.zip", {{"old.csv", "the old archive"}});
    };
    for (const bool overOld : {false, true}) {
        disturb({.name = overOld ? "archive over an old one" : "archive",
                 .before = {{"local/1.csv", "rows of one"}, {"local/2.csv", std::string(20'000, '2')}},
                 .run =
                     [](Place& place) {
                         ZipOptions options;
                         options.kept = &place.kept;
                         ZipWriter writer(place.root / "zips/1234.zip", options);
                         return writer.add(place.root / "local/1.csv", "1.csv")
                             .and_then([&] { return writer.add(place.root / "local/2.csv", "2.csv"); })
                             .and_then([&] { return writer.finish(); })
                             .has_value();
                     },
                 .keepsOld = true,
                 .prepare = overOld ? oldArchive : std::function<void(const NativePath&)>()});
    }
}

const std::vector<test::ZipEntry> kDatabase{{"Database/jpg.dat", "1,FFD8FF,H\r\n"},
                                            {"Database/pdf.dat", "1,%PDF,T\r\n"},
                                            {"Settings/Errors.dat", "Header OK\r\n"}};

TEST_F(SaveTable, UnpackedDatabase) {
    for (const auto& [overOld, held] : {std::pair{false, kHeldEntry}, {true, kHeldEntry}, {true, std::uint64_t{1}}}) {
        disturb({.name = overOld ? "unpack over an old one" : "unpack",
                 .before = overOld ? Bytes{{"local/Database/jpg.dat", "of the user"}} : Bytes(),
                 .run =
                     [held = held](Place& place) {
                         ExtractOptions options;
                         options.heldBytes = held;
                         options.kept = &place.kept;
                         return extractArchive(place.root / "app/db.zip", place.root / "local", options).has_value();
                     },
                 .newMayStand = true,
                 .keepsOld = true,
                 .inParts = true,
                 .prepare = [](const NativePath& root) { test::writeZip(root / "app/db.zip", kDatabase); }});
    }
}

// The settings come last: with them everything is there.
TEST_F(SaveTable, DefaultInstallation) {
    const auto run = [](Place& place) {
        Installation fresh(place.root / "app");
        const bool done = setUpDefaultInstallation(fresh).has_value();
        const bool whole = pathExists(place.root / "app/Data/Settings/Errors.dat") &&
                           pathExists(place.root / "app/Data/Database/jpg.dat");
        EXPECT_TRUE(whole || !pathExists(place.root / "app/settings.dat"));
        return done;
    };
    disturb({.name = "default installation",
             .before = {},
             .run = run,
             .inParts = true,
             .prepare = [](const NativePath& root) { test::writeZip(root / "app/db.zip", kDatabase); }});
}

TEST_F(SaveTable, Backup) {
    const auto run = [](Place& place) {
        ZipOptions options;
        options.kept = &place.kept;
        return backUpSharedDatabase(place.paths(), place.surroundings, options).has_value();
    };
    disturb({.name = "backup",
             .before = {{"share/Database/jpg.dat", "terms"}, {"share/Settings/CommonHeaders.dat", "lines"}},
             .run = run,
             .keepsOld = true,
             .prepare = [](const NativePath& root) {
                 test::writeZip(root / "share/DBBackup_15112026.zip", {{"jpg.dat", "of this morning"}});
             }});
}

const Bytes kShare{{"local/Database/gone.dat", "no longer shared"}, {"local/Database/jpg.dat", "old terms"},
                   {"local/Database/pdf.dat", "older terms"},       {"local/Settings/CommonHeaders.dat", "old"},
                   {"local/Settings/SkipList.dat", "old skips"},    {"share/Database/jpg.dat", "new terms"},
                   {"share/Database/new.dat", "first terms"},       {"share/Database/pdf.dat", "newer terms"},
                   {"share/Settings/CommonHeaders.dat", "new"},     {"share/Settings/SkipList.dat", "new skips"}};

TEST_F(SaveTable, RefreshOfTheDatabase) {
    class NoBar final : public ProgressHost {
    public:
        void progressRange(std::int64_t /*maximum*/) override {}
        void progressValue(std::int64_t /*value*/) override {}
        void currentFile(const std::string& /*text*/) override {}
    };
    const auto refresh = [](Place& place) {
        NoBar bar;
        const auto names = databaseFiles(place.paths().sharedDatabase);
        const auto counts = copyChangedTermFiles(names, place.paths(), place.kept, bar);
        EXPECT_EQ(counts.copied + counts.failed, 3U) << "each file counts";
        return counts.failed == 0;
    };
    const auto orphans = [](Place& place) {
        NoBar bar;
        return moveOrphansAway(findOrphanTermFiles(place.paths(), bar), place.paths(), place.kept).failed == 0;
    };
    disturb({.name = "refresh", .before = kShare, .run = refresh, .keepsOld = true, .inParts = true});
    disturb({.name = "orphans", .before = kShare, .run = orphans, .keepsOld = true, .inParts = true});
}

TEST_F(SaveTable, RefreshOfTheRuleLists) {
    const auto headers = [](Place& place) { return fetchCommonHeaders(place.paths(), place.kept).has_value(); };
    const auto skips = [](Place& place) { return fetchSkipList(place.paths(), place.kept).has_value(); };
    disturb({.name = "common headers", .before = kShare, .run = headers, .newMayStand = true, .keepsOld = true});
    disturb({.name = "skip list", .before = kShare, .run = skips, .newMayStand = true, .keepsOld = true});
}

// The rows that were said to be written, whole and in their order, and no others.
void writeRows(const NativePath& list, ListEncoding encoding, int n, const Fault& fault, bool& met) {
    std::string expected = encoding == ListEncoding::Utf16WithMark ? "\xFF\xFE" : "";
    bool created = false;
    {
        FailingFiles disk;
        disk.failAt(n, fault);
        if (auto writer = ListWriter::create(list, encoding)) {
            created = true;
            for (int i = 0; i < 5; ++i) {
                const std::u16string row = u"/row " + std::u16string(1, static_cast<char16_t>(u'0' + i));
                const std::u16string line = row + u"\r\n";
                if (writer->write(ListRow(row)))
                    expected += encoding == ListEncoding::Page ? toPage(line).bytes : test::utf16Bytes(line);
            }
            EXPECT_TRUE(writer->close() || disk.met());
        }
        met = disk.met();
    }
    const std::string bytes = readWholeFile(list).value_or("");
    EXPECT_TRUE(!created || bytes.starts_with(expected)) << "call " << n;
    EXPECT_TRUE(!created || fault.lasting || bytes == expected) << "call " << n;
}

TEST_F(SaveTable, RowsOfAList) {
    for (const auto encoding : {ListEncoding::Utf16, ListEncoding::Utf16WithMark, ListEncoding::Page}) {
        for (const Fault fault : {Fault{ENOSPC}, {ENOSPC, false, true}, {EIO, true}, {EIO, true, true}}) {
            bool met = true;
            for (int n = 1; met; ++n) {
                writeRows(temp / "7.csv", encoding, n, fault, met);
                ASSERT_LT(n, 100);
            }
        }
    }
}

CopyFacts copyFacts(std::string_view bytes) {
    Sha256 hash;
    hash.add(bytes);
    CopyFacts facts;
    facts.size = bytes.size();
    facts.hash = hash.finish();
    facts.sourceModified = FileTime{1'700'000'000, 0};
    return facts;
}

std::vector<std::string> notedCopies(const NativePath& journal) {
    std::vector<std::string> names;
    EXPECT_TRUE(readCopyJournal(journal, [&names](const NotedCopy& copy) {
        EXPECT_EQ(copy.facts.hash, copyFacts(copy.name).hash);
        names.push_back(copy.name);
    }));
    return names;
}

// Whole notes in their order, from the first one on; behind a failed one may be none, and none but the last one is lost
// where the next run goes on.
TEST_F(SaveTable, NotesOfCopies) {
    const NativePath journal = copyJournalIn(temp.path(), "7");
    const std::vector<std::string> names = {"a/one", "a/two", "three", "of the next run"};
    for (const Fault fault : {Fault{ENOSPC}, {ENOSPC, false, true}, {EIO, true}, {EIO, true, true}}) {
        bool met = true;
        for (int n = 1; met; ++n) {
            std::filesystem::remove(journal);
            {
                FailingFiles disk;
                disk.failAt(n, fault);
                CopyJournal notes(journal);
                for (std::size_t i = 0; i < 3; ++i) notes.add(names[i], copyFacts(names[i]));
                met = disk.met();
            }
            const std::vector<std::string> noted = notedCopies(journal);
            ASSERT_LE(noted.size(), 3U);
            EXPECT_TRUE(std::equal(noted.begin(), noted.end(), names.begin())) << "call " << n;
            EXPECT_TRUE(met || noted.size() == 3);
            CopyJournal(journal).add(names[3], copyFacts(names[3]));
            EXPECT_EQ(notedCopies(journal).size(), noted.size() + 1) << "call " << n;
            ASSERT_LT(n, 100);
        }
    }
}

}  // namespace
}  // namespace quillon
