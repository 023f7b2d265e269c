// SPDX-License-Identifier: MIT
// Every save of single files, on a disk of which every call fails once: the old bytes or the new ones stand, what is
// replaced and must not be lost stands somewhere, no temporary file is left, and what says that it is done has done all
// of it.
#include "app/installation.h"
#include "app/preferences.h"
#include "editors/bad_sector_marker.h"
#include "editors/list_saving.h"
#include "messaging/message_log.h"
#include "programs/save_table.h"
#include "setup/settings_transfer.h"
#include "setup/shared_database.h"
#include "testing/rule_line.h"
#include "testing/skip_list.h"
#include "testing/term_file.h"

namespace quillon {
namespace {

using test::Bytes;
using test::Place;
using test::SaveTable;

TEST_F(SaveTable, SettingsRecord) {
    AppSettings old;
    old.localPath.assign(PageText{"/data"});
    disturb({.name = "settings", .before = {{"app/settings.dat", encodeSettings(old)}}, .run = [](Place& place) {
                 if (!place.installation.loadSettingsRecord())
                     return false;
                 place.installation.settings.alertRecipient.assign(PageText{"LAB8"});
                 return place.installation.saveSettingsRecord().has_value();
             }});
}

TEST_F(SaveTable, Preferences) {
    disturb({.name = "preferences", .before = {{"app/preferences.ini", "other=1\n"}}, .run = [](Place& place) {
                 const auto choose = [](Preferences& all) { all.set(Preference<bool>{"test.flag"}, true); };
                 return changePreferences(place.installation.appFolder(), choose).has_value();
             }});
}

TEST_F(SaveTable, ExportedSettings) {
    const auto run = [](Place& place) {
        exportSettings(place.installation, place.surroundings);
        return place.dialogs.titles == std::vector<std::string>{"Export OK"};
    };
    disturb({.name = "export", .before = {{"app/settings.dat", "any"}}, .run = run});
    disturb({.name = "second export",
             .before = {{"app/settings.dat", "any"}, {std::string("out/") + kExportedSettingsName, "before"}},
             .run = run});
}

TEST_F(SaveTable, TermFile) {
    disturb({.name = "terms", .before = {{"local/Database/jpg.dat", "1,4A464946,H\r\n"}}, .run = [](Place& place) {
                 const HeaderTerm text{PageText{"0"}, PageText{"JFIF"}, PageText{"T"}};
                 return saveTermFile(place.paths().localDatabase / "jpg.dat", {text}).has_value();
             }});
}

TEST_F(SaveTable, RuleLists) {
    for (const bool seen : {true, false}) {
        disturb(
            {.name = "rule list",
             .before = {{"local/Settings/SkipList.dat", "tmp\r\n"}},
             .run =
                 [seen](Place& place) {
                     ListSaver saver(place.kept);
                     if (seen)
                         saver.loaded("tmp\r\n");
                     return saver.save(place.paths().localSettings / kSkipListFileName, "tmp\r\nbak\r\n").has_value();
                 },
             .keepsOld = !seen});
    }
}

// The last line has no end: the new one still stands on a line of its own.
TEST_F(SaveTable, RuleLine) {
    for (const char* old : {"0,a,T,x\r\n", "0,a,T,x"}) {
        disturb({.name = "rule line",
                 .before = {{"local/Settings/CommonHeaders.dat", old}},
                 .run =
                     [](Place& place) {
                         return appendRuleLine(place.paths().localSettings, kCommonHeadersFileName,
                                               PageText{"5,NEW,T,y"})
                             .has_value();
                     },
                 .newMayStand = true});
    }
}

TEST_F(SaveTable, MessageLog) {
    const Bytes logs{{"local/Settings/Messaging logs/logs.dat", "1;one\r\n"},
                     {"share/Settings/Messaging logs/logs.dat", "1;one\r\n"}};
    const auto run = [](Place& place) {
        std::string text = "two";
        return writeMessageLog(text, place.installation, place.surroundings).has_value();
    };
    for (const bool shared : {true, false})
        disturb({.name = "log", .before = logs, .run = run, .newMayStand = true, .inParts = true, .shared = shared});
    disturb({.name = "first log", .before = {}, .run = run, .newMayStand = true, .inParts = true});
}

TEST_F(SaveTable, SectorPreview) {
    const auto run = [](Place& place) { return writePreview(place.installation, "BAD").has_value(); };
    disturb({.name = "preview", .before = {{"app/bSector.test", "old"}}, .run = run});
}

TEST_F(SaveTable, FilesThatAreKept) {
    const auto move = [](Place& place) { return place.kept.moveAway(place.root / "local/7.csv").has_value(); };
    const auto copy = [](Place& place) { return place.kept.copyAway(place.root / "local/7.csv").has_value(); };
    const Bytes before{{"local/7.csv", std::string(100'000, 'r')}};
    disturb({.name = "move", .before = before, .run = move, .keepsOld = true, .inParts = true});
    disturb({.name = "move to another volume",
             .before = before,
             .run = move,
             .keepsOld = true,
             .inParts = true,
             .refused = {{"rename", EXDEV}}});
    disturb({.name = "copy", .before = before, .run = copy, .keepsOld = true});
}

}  // namespace
}  // namespace quillon
