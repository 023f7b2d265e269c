// SPDX-License-Identifier: MIT
#pragma once

// The skip list as its screen edits it, without the screen: every change is saved at once. docs/formats/rule-lists.md.

#include <string>
#include <string_view>
#include <vector>

#include "app/dialogs.h"
#include "app/installation.h"
#include "app/kept_files.h"
#include "editors/list_copies.h"

namespace quillon {

class SkipListEditor {
public:
    /// All must outlive this. Nothing is read before `load`.
    SkipListEditor(const Installation& installation, Dialogs& dialogs, KeptFiles& kept);

    std::string entry;  ///< `TextBox1`, UTF-8

    /// The terms in the order of the list.
    [[nodiscard]] const std::vector<PageText>& terms() const { return terms_; }
    /// The selected row from 0, -1 for none.
    [[nodiscard]] int selected() const { return selected_; }
    /// True while `Command1` says "Update".
    [[nodiscard]] bool updating() const { return updating_; }

    /// Reads the list: the shared copy when sharing is on and it exists, otherwise the local one. A file that is
    /// missing or cannot be read gives no terms.
    void load();

    /// A row was clicked: its term goes to the entry, and the next `addOrUpdate` replaces it. A row that does not exist
    /// is passed over.
    void selectRow(int row);

    /// "Add" or "Update". Terms are stored and compared in lower case; a term that is there already is not added again,
    /// but an update does not look for it.
    /// Kept: an empty entry is a term, an empty line of the file, which the walk reads as a pattern that fits
    /// everything (test AnEmptyEntryIsSavedAsAnEmptyLine).
    void addOrUpdate();

    /// Empties the entry and goes back to "Add". The row stays selected.
    void clear();

    /// Asks and removes the selected row; without one nothing happens.
    void deleteSelected();

    /// Asks for a file and puts it in the place of the list, whose old bytes go under Kept. False when that failed: the
    /// list is as it was. A person who changed his mind is no failure.
    [[nodiscard]] bool loadFromFile();

    /// The screen closes. What is not saved, as the person did not wait for another computer, is saved now; where he
    /// does not wait again, a box asks whether it closes all the same. False: it stays.
    [[nodiscard]] bool saveToClose();

private:
    [[nodiscard]] NativePath listFile() const;
    [[nodiscard]] std::string fileBytes() const;
    [[nodiscard]] std::vector<NativePath> copies() const;
    void save();
    void forgetRow();

    const Installation& installation_;
    Dialogs& dialogs_;
    KeptFiles& kept_;
    std::vector<PageText> terms_;
    ListCopies copies_;
    int selected_ = -1;
    bool updating_ = false;
};

}  // namespace quillon
