// SPDX-License-Identifier: MIT
#pragma once

// The list of common headers as its screen edits it, without the screen. docs/formats/rule-lists.md.

#include <string>
#include <string_view>
#include <vector>

#include "app/dialogs.h"
#include "app/installation.h"
#include "app/kept_files.h"
#include "editors/list_copies.h"
#include "testing/report_messages.h"

namespace quillon {

/// One line of the list, as it stands there.
struct CommonHeader {
    PageText offset;
    PageText term;
    PageText type;  ///< "H" for hexadecimal, else text
    PageText id;

    friend bool operator==(const CommonHeader&, const CommonHeader&) = default;
};

/// Fields 0 to 3 of every line. What a short line lacks is empty; a line without anything is left out.
[[nodiscard]] std::vector<CommonHeader> parseCommonHeaders(std::string_view bytes);
/// "offset,term,type,id" a line, CR LF behind each.
[[nodiscard]] std::string commonHeaderBytes(const std::vector<CommonHeader>& rows);

/// `Label4`: the head of the result of a common header.
[[nodiscard]] std::string currentPrefix(const ReportMessages& messages);

class CommonHeadersEditor {
public:
    /// All must outlive this. Nothing is read before `load`.
    CommonHeadersEditor(const Installation& installation, Dialogs& dialogs, KeptFiles& kept);

    /// The entry fields, UTF-8.
    struct Fields {
        std::string id;
        std::string term;
        std::string offset;
        bool hexadecimal = false;  ///< `cboType` is "Hex"

        friend bool operator==(const Fields&, const Fields&) = default;
    };
    Fields fields;
    bool deleteAllEnabled = false;  ///< `Check1`

    /// In the order of the file, which is the order of evaluation.
    [[nodiscard]] const std::vector<CommonHeader>& rows() const { return rows_; }
    /// The selected row from 0, -1 for none.
    [[nodiscard]] int selected() const { return selected_; }
    /// True while `Command1` says "Update"; `Label3` shows then.
    [[nodiscard]] bool updating() const { return updating_; }

    /// Reads the shared copy when sharing is on and it exists, otherwise the local one; when that has no rows, the
    /// local one. A second reading also puts the local file over the shared one, whose old bytes go under Kept; with
    /// sharing on only where that still holds no rows in this program's turn: else its rows are loaded.
    /// Kept: that happens with sharing off as well (test ASecondReadingFillsTheShareWhateverTheFlag).
    void load();

    enum class Entered {
        Done,         ///< the row is in the list and the fields are empty
        Refused,      ///< a beep; nothing changed
        BadHexDigits  ///< a box told why; the keyboard goes to `tTerm`
    };
    /// "Add" or "Update". An update without a selected row is refused.
    Entered addOrUpdate();

    /// The right button on `Command1`: from "Add" to "Update" and back.
    void toggleMode() { updating_ = !updating_; }

    /// A row was clicked: it goes to the fields. A row that does not exist is passed over.
    void selectRow(int row);

    void clear();

    /// Asks and removes the selected row, and goes back to "Add"; without one nothing happens.
    void deleteSelected();

    /// Asks and empties the list. The files go under Kept; the shared one only after a question of its own.
    void deleteAll();

    /// Writes the local file and with sharing on the shared one; the first failure ends it. Files that hold what was
    /// not on the screen go under Kept before they are overwritten; what others did to a copy since it was loaded is
    /// put into the rows first (ListCopies).
    [[nodiscard]] Result<void> save();
    /// The person did not wait for another computer at the last save, so that the rows are still to be saved.
    [[nodiscard]] bool isLeft() const { return copies_.isLeft(); }

private:
    [[nodiscard]] NativePath localFile() const;
    [[nodiscard]] NativePath sharedFile() const;
    void readInto(const NativePath& file);
    [[nodiscard]] Result<void> fillShare();
    [[nodiscard]] std::vector<NativePath> copies() const;

    const Installation& installation_;
    Dialogs& dialogs_;
    KeptFiles& kept_;
    std::vector<CommonHeader> rows_;
    ListCopies copies_;
    int selected_ = -1;
    bool updating_ = false;
};

}  // namespace quillon
