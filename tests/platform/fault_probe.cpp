// SPDX-License-Identifier: MIT
// A program that does one thing to data files, so that a test can fail or kill it at any of its system calls.
//
//   quillon_fault_probe settings APPFOLDER        loads the record, names another recipient, saves it
//   quillon_fault_probe term FILE                 saves a term file of two terms
//   quillon_fault_probe save FILE                 saves a file that holds "new bytes"
//   quillon_fault_probe append FILE               appends the row "new row"
//   quillon_fault_probe rule FOLDER               adds the line "5,NEW,T,y" to the common headers there
//   quillon_fault_probe unpack ARCHIVE FOLDER     unpacks an archive over what is there
//   quillon_fault_probe copy SOURCE TARGET        copies a file
//   quillon_fault_probe keep LOCALROOT FILE       moves a file under Kept
//   quillon_fault_probe note FOLDER               saves the term file Database/jpg.dat there and notes the change
//   quillon_fault_probe head FILE                 reads a head, which must be that of the file "head bytes"
//
// Exit status: 0 done, 3 a failure was reported, 2 wrong usage.
#include <string>
#include <string_view>

#include "app/database_history.h"
#include "app/installation.h"
#include "app/kept_files.h"
#include "archive/zip_reader.h"
#include "platform/copy_file.h"
#include "platform/source_files.h"
#include "platform/whole_file.h"
#include "testing/rule_line.h"
#include "testing/term_file.h"

namespace {

using namespace quillon;

constexpr int kDone = 0;
constexpr int kWrongUsage = 2;
constexpr int kReported = 3;

bool saveSettings(const char* appFolder) {
    Installation installation(appFolder);
    if (!installation.loadSettingsRecord())
        return false;
    installation.settings.alertRecipient.assign(PageText{"LAB8"});
    return installation.saveSettingsRecord().has_value();
}

bool saveTerms(const char* path) {
    const HeaderTerm jpeg{PageText{"1"}, PageText{"FFD8FF"}, PageText{"H"}};
    const HeaderTerm text{PageText{"0"}, PageText{"JFIF"}, PageText{"T"}};
    return saveTermFile(path, {jpeg, text}).has_value();
}

bool saveNoted(const char* root) {
    const NativePath file = NativePath(root) / "Database/jpg.dat";
    const std::string bytes = "1,FFD8FF,H\r\n";
    DatabaseChange change = changeBy("Extension Editor");
    change.files = {{"Database/jpg.dat", readWholeFile(file).value_or(""), bytes}};
    DatabaseTurn turn(NativePath(root) / "Settings");
    return turn.make(std::move(change), [&] { return saveWholeFileThrough(turn.through(), file, bytes); }) &&
           !turn.problem();
}

bool copy(const char* source, const char* target) {
    FileCopier copier;
    return copier.copy(source, target, [](std::uint64_t, std::uint64_t) { return true; }).has_value();
}

bool keep(const char* localRoot, const char* file) {
    Installation installation("/");
    installation.settings.localPath.assign(pageFromPath(localRoot));
    installation.refreshPathVariables();
    const SystemClock clock;
    return KeptFiles(installation, clock).moveAway(file).has_value();
}

bool readHead(const char* file) {
    HeaderBytes head;
    const auto read = SourceFiles().readHead(file, head);
    return read && *read == kHeaderBytes && std::string_view(head.data(), head.size()).starts_with("head bytes  ");
}

}  // namespace

int main(int count, char* arguments[]) {
    if (count < 3)
        return kWrongUsage;
    const std::string_view what = arguments[1];
    bool done = false;
    if (what == "settings")
        done = saveSettings(arguments[2]);
    else if (what == "term")
        done = saveTerms(arguments[2]);
    else if (what == "save")
        done = saveWholeFile(arguments[2], "new bytes").has_value();
    else if (what == "append")
        done = appendToFile(arguments[2], "new row\r\n").has_value();
    else if (what == "rule")
        done = appendRuleLine(arguments[2], kCommonHeadersFileName, PageText{"5,NEW,T,y"}).has_value();
    else if (what == "unpack" && count == 4)
        done = extractArchive(arguments[2], arguments[3]).has_value();
    else if (what == "copy" && count == 4)
        done = copy(arguments[2], arguments[3]);
    else if (what == "keep" && count == 4)
        done = keep(arguments[2], arguments[3]);
    else if (what == "note")
        done = saveNoted(arguments[2]);
    else if (what == "head")
        done = readHead(arguments[2]);
    else
        return kWrongUsage;
    return done ? kDone : kReported;
}
