// SPDX-License-Identifier: MIT
#pragma once

// The Extension Editor without its screen: the terms of one extension beside the files that show whether they hold. All
// edits live in the rows until `save`. Rows and entries count from 0, -1 for none. docs/formats/term-file.md.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/dialogs.h"
#include "app/installation.h"
#include "app/kept_files.h"
#include "app/screen_host.h"
#include "editors/list_copies.h"
#include "testing/report_messages.h"
#include "testing/suggest/term_suggestion.h"
#include "testing/term_file.h"
#include "viewer/editor_handover.h"

namespace quillon {

inline constexpr const char* kCurrentFileName = "tFile.bin";
/// The entries of the type: "Text" is 0, "HEX" is 1.
inline constexpr int kTextType = 0;
inline constexpr int kHexType = 1;

/// What the screen shows. Texts are UTF-8 but those marked as list text.
struct ExtensionEditorState {
    std::u16string extension;                 ///< Text1, list text
    std::string position = "1";               ///< Text2; the screen writes it through positionChanged
    std::string term;                         ///< Text3; the screen writes it through termChanged
    int type = kTextType;                     ///< Combo2; the screen writes it
    bool updating = false;                    ///< Command2 reads "Update", otherwise "Add"
    std::vector<HeaderTerm> rows;             ///< iGrid1, in the order of evaluation
    int currentRow = -1;                      ///< of iGrid1
    bool upEnabled = false;                   ///< Command12_0
    bool downEnabled = false;                 ///< Command12_1
    bool deleteAllTicked = false;             ///< Check1, which enables Command10
    std::vector<std::u16string> files;        ///< Combo1, list text
    int currentFile = -1;                     ///< of Combo1
    std::string viewing;                      ///< Label6
    std::string head;                         ///< Hex1: the bytes in view
    bool commonShown = false;                 ///< Label7, Combo3 and Command13 are visible
    std::vector<std::u16string> identifiers;  ///< Combo3, list text
    int identifier = -1;                      ///< of Combo3; the screen writes it
    bool framesEnabled = true;                ///< Frame1, Frame2 and Frame3
    bool busyPointer = false;                 ///< hourglass
};

class ExtensionEditor {
public:
    /// All must outlive this.
    ExtensionEditor(const Installation& installation, Dialogs& dialogs, KeptFiles& kept, const ReportMessages& messages,
                    ScreenHost& host, std::function<void()> clearClipboard)
        : installation_(installation),
          dialogs_(dialogs),
          kept_(kept),
          messages_(messages),
          host_(host),
          clearClipboard_(std::move(clearClipboard)) {}

    ExtensionEditorState state;

    /// The screen opens: files, terms (from the local folder alone), common headers; shows the first file. Files of
    /// length 0 and files that are gone are left out, but for those of a source that is away whose head is kept: it is
    /// shown, marked as such, and searched.
    void load(const EditorHandover& handover);

    void chooseFile(int file);
    /// "+". Kept: behind the last file it beeps and goes to the first (test PlusOnTheLastFileBeepsAndGoesToTheFirst).
    void nextFile();
    /// "-". Kept: ahead of the first file it goes to the last silently (test MinusOnTheFirstFileGoesToTheLastSilently).
    void previousFile();
    /// The caret of the hex view moved to this byte, from 0, or the first of the bytes selected by it.
    void caretMoved(int byte) { state.position = std::to_string(byte + 1); }

    /// A text was typed or pasted; of several lines the first counts. A term with a comma is refused and loses it.
    void positionChanged(const std::string& position);
    void termChanged(const std::string& term);

    /// A row becomes the current one and goes to the criteria. A row that does not exist is passed over.
    void selectRow(int row);
    /// "Add" or "Update". An update without a current row adds one.
    void addOrUpdate();
    /// "Clr".
    void clear();
    /// A suggested term goes to the criteria.
    void takeSuggestion(const TermSuggestion& suggestion);
    /// Bytes that are marked in the hex view go to the criteria: as text where they are text. None change nothing.
    void takeBytes(int first, std::string_view bytes);
    void presetExe() { fill("1", "MZ", kTextType); }
    void presetOle() { fill("1", "D0CF11", kHexType); }
    void presetWp() { fill("1", "WP", kTextType); }
    void moveUp();
    void moveDown();
    /// "Delete".
    void deleteRow();
    /// "Delete All".
    void deleteAllRows();

    /// The popup of the grid works on the row that the last mouse event hit.
    void hitRow(int row);
    [[nodiscard]] std::string addCommonCaption() const;
    void popupDelete();
    /// Kept: the record goes to the shared list alone; without sharing nothing is stored and nothing is said (test
    /// WithoutSharingAnIdentifierIsAskedForAndNothingIsStored).
    void popupAddCommon();

    /// "Test": counts the files that hold the term and offers to add it.
    void search();
    /// "Test" beside the common headers: fills the criteria from the chosen identifier's record and searches.
    void testCommon();

    /// "Done": writes the rows to the local term file, then to the shared one if sharing is on; each by itself, and no
    /// failure is told. Without rows neither is written. What others did to a copy since the load is put into the rows
    /// first (ListCopies).
    /// Kept: so the last row deleted is back when the screen opens again (test
    /// ATermDeletedAsTheLastRowIsBackOnReopening). A shared file that was to go with the last row, and could not as the
    /// person did not wait then, goes now. False: the person did not wait for another computer, so that the rows are
    /// still to be saved.
    bool save();
    /// The same as the screen closes: where the person did not wait, a box asks whether it closes all the same. False:
    /// it stays.
    [[nodiscard]] bool saveToClose();

private:
    void loadFiles(const EditorHandover& handover);
    void loadTerms();
    void loadCommonHeaders(const EditorHandover& handover);
    [[nodiscard]] NativePath commonHeadersFile() const;
    [[nodiscard]] NativePath termFileIn(const NativePath& folder) const;
    void showFile();
    void fill(const char* position, const char* term, int type);
    void moveRow(int from, int to);
    void applyMoveRule();
    void removeRow(int row);
    void afterDeletion();
    [[nodiscard]] bool checkCriteria();
    [[nodiscard]] bool checkHexCriteria();
    void repairPosition();
    void searchFiles();
    [[nodiscard]] std::string extensionText() const;
    [[nodiscard]] std::vector<NativePath> copies() const;

    const Installation& installation_;
    Dialogs& dialogs_;
    KeptFiles& kept_;
    const ReportMessages& messages_;
    ScreenHost& host_;
    std::function<void()> clearClipboard_;
    ListCopies copies_{installation_, dialogs_, kept_, kTermFormNeverEmpty};
    int hitRow_ = -1;
    KeptHeads keptHead_;
};

}  // namespace quillon
