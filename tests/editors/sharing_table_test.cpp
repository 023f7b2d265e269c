// SPDX-License-Identifier: MIT
// The local copy and the shared copy, over all screens that edit the database: which of the two each action reads and
// writes, with sharing off and on.

#include <functional>

#include <gtest/gtest.h>

#include "editors/editor_folders.h"
#include "editors/extension_editor.h"
#include "editors/manual_update.h"
#include "job/job.h"
#include "support/recording_screen.h"
#include "viewer/list_viewer.h"

using namespace quillon;
using quillon::test::EditorFolders;

namespace {

// All that the screens need, over one installation.
struct Screens {
    explicit Screens(bool sharing) : folders(sharing) {}

    ExtensionEditor& editor() {
        extensionEditor.load({0, u"jpg", {}, {}, {}});
        return extensionEditor;
    }
    ManualUpdate& update() {
        manualUpdate.setExtension("jpg");
        return manualUpdate;
    }
    void expectYes(const char* title, const char* text) { folders.dialogs.expectBox(title, text, BoxAnswer::Yes); }

    EditorFolders folders;
    Job job{folders.installation, folders.fake.surroundings};
    test::RecordingScreen screen;
    ExtensionEditor extensionEditor{folders.installation, folders.dialogs, job.kept(), job.messages, screen, [] {}};
    ManualUpdate manualUpdate{folders.installation, folders.dialogs, folders.kept};
    ListViewer viewer{viewedJob(job), screen};
    std::string loaded;  // what an action that loads has read
};

struct Case {
    const char* action;
    bool sharing;
    const char* file;    // below the local root and below the share
    const char* local;   // afterwards
    const char* shared;  // afterwards
    const char* loaded;  // rows read, for the actions that load
    std::function<void(Screens&)> act;
};

constexpr const char* kTerms = "Database/jpg.dat";
constexpr const char* kSkip = "Settings/SkipList.dat";
constexpr const char* kCommon = "Settings/CommonHeaders.dat";
// Before each action
constexpr const char* kL = "1,local,T\r\n";
constexpr const char* kS = "1,shared,T\r\n";
constexpr const char* kMissing = "(missing)";

void loadEditor(Screens& s) {
    s.loaded = termFileBytes(s.editor().state.rows);
}
void loadUpdate(Screens& s) {
    s.loaded = termFileBytes(s.update().rows());
}
void loadUpdateWithoutShare(Screens& s) {
    std::filesystem::remove_all(s.folders.folder / "share");
    loadUpdate(s);
}
void saveEditor(Screens& s) {
    s.editor().state.rows = {{{"2"}, {"new"}, {"T"}}};
    s.extensionEditor.save();
}
void saveEditorWithoutRows(Screens& s) {
    s.editor().state.rows.clear();
    s.extensionEditor.save();
}
void deleteLastRow(Screens& s) {
    s.editor().selectRow(0);
    s.expectYes("Delete entry", "Delete entry for jpg ?");
    s.extensionEditor.deleteRow();
}
void saveUpdate(Screens& s) {
    s.update().fields = {"2", "new", false};
    s.manualUpdate.addOrUpdate();
    s.manualUpdate.save();
}
void saveUpdateWithoutRows(Screens& s) {
    for (const char* file : {"local/Database/jpg.dat", "share/Database/jpg.dat"}) s.folders.folder.write(file, "");
    s.update().save();
}
void deleteInUpdate(Screens& s) {
    s.update().fields = {"2", "new", false};
    s.manualUpdate.addOrUpdate();
    s.manualUpdate.deleteTerms();
}
void deleteAllInUpdate(Screens& s) {
    s.update().deleteAllTerms = true;
    s.expectYes("Delete entry", "Are you sure you want to delete all terms for jpg ?");
    s.manualUpdate.deleteTerms();
}
void addCommonHeader(Screens& s) {
    s.job.messages[Grade::CommonHeader] = u"Type:";
    s.editor().state.rows = {{{"1"}, {"PK"}, {"T"}}};
    s.extensionEditor.hitRow(0);
    s.folders.dialogs.expectInput("Enter Identifier",
                                  "Please enter an Idientifier (e.g. Graphics file, Music File, etc.) for the term "
                                  "PK\r\nThe current prefix is \r\n\r\nType:\r\n",
                                  "Zip");
    s.extensionEditor.popupAddCommon();
}
void addSkipTerm(Screens& s) {
    s.folders.dialogs.expectInput("Add to skip list", "Please enter the term you want to add to the skip list.",
                                  "*.tmp");
    s.viewer.addToSkipList();
}

const Case kCases[] = {
    {"load in the Extension Editor", false, kTerms, kL, kS, kL, loadEditor},
    {"load in the Extension Editor", true, kTerms, kL, kS, kL, loadEditor},
    {"load in the manual update", false, kTerms, kL, kS, kL, loadUpdate},
    {"load in the manual update", true, kTerms, kL, kS, kS, loadUpdate},
    {"load in the manual update, share away", true, kTerms, kL, kMissing, kL, loadUpdateWithoutShare},
    {"Done in the Extension Editor", false, kTerms, "2,new,T\r\n", kS, "", saveEditor},
    {"Done in the Extension Editor", true, kTerms, "2,new,T\r\n", "2,new,T\r\n", "", saveEditor},
    {"Done in the Extension Editor, no rows", false, kTerms, kL, kS, "", saveEditorWithoutRows},
    {"Done in the Extension Editor, no rows", true, kTerms, kL, kS, "", saveEditorWithoutRows},
    {"last row deleted in the Extension Editor", false, kTerms, kL, kS, "", deleteLastRow},
    {"last row deleted in the Extension Editor", true, kTerms, kL, kMissing, "", deleteLastRow},
    {"save in the manual update", false, kTerms, "1,local,T\r\n2,new,T\r\n", kS, "", saveUpdate},
    {"save in the manual update", true, kTerms, "1,shared,T\r\n2,new,T\r\n", "1,shared,T\r\n2,new,T\r\n", "",
     saveUpdate},
    {"save in the manual update, no rows", true, kTerms, "", "", "", saveUpdateWithoutRows},
    {"Delete in the manual update", false, kTerms, "1,local,T\r\n2,new,T\r\n", kS, "", deleteInUpdate},
    {"Delete in the manual update", true, kTerms, "1,shared,T\r\n2,new,T\r\n", kS, "", deleteInUpdate},
    {"Delete all terms in the manual update", false, kTerms, kL, kS, "", deleteAllInUpdate},
    {"Delete all terms in the manual update", true, kTerms, kS, kMissing, "", deleteAllInUpdate},
    {"common header added in the Extension Editor", false, kCommon, kL, kS, "", addCommonHeader},
    {"common header added in the Extension Editor", true, kCommon, kL, "1,shared,T\r\n1,PK,T,Zip\r\n", "",
     addCommonHeader},
    {"skip term added in the viewer", false, kSkip, "1,local,T\r\n*.tmp\r\n", kS, "", addSkipTerm},
    {"skip term added in the viewer", true, kSkip, "1,local,T\r\n*.tmp\r\n", "1,shared,T\r\n*.tmp\r\n", "",
     addSkipTerm},
};

TEST(SharingTable, EveryActionReadsAndWritesTheCopiesThatAreTold) {
    for (const Case& one : kCases) {
        SCOPED_TRACE(std::string(one.action) + (one.sharing ? ", sharing on" : ", sharing off"));
        Screens screens(one.sharing);
        screens.folders.folder.write(std::string("local/") + one.file, kL);
        screens.folders.folder.write(std::string("share/") + one.file, kS);
        one.act(screens);
        EXPECT_EQ(screens.folders.bytesOf(std::string("local/") + one.file), one.local);
        EXPECT_EQ(screens.folders.bytesOf(std::string("share/") + one.file), one.shared);
        EXPECT_EQ(screens.loaded, one.loaded);
    }
}

}  // namespace
