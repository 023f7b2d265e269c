// SPDX-License-Identifier: MIT
#pragma once

// The manual update of the header database, without its screen: the terms of one extension, typed or taken from a
// sample file. It reads the shared copy first and saves even an empty list. docs/formats/term-file.md.

#include <string>
#include <string_view>
#include <vector>

#include "app/dialogs.h"
#include "app/installation.h"
#include "app/kept_files.h"
#include "editors/list_copies.h"
#include "testing/term_file.h"

namespace quillon {

inline constexpr const char* kSampleDumpName = "fDump.bin";

class ManualUpdate {
public:
    /// All must outlive this. Nothing is read before `load`.
    ManualUpdate(const Installation& installation, Dialogs& dialogs, KeptFiles& kept)
        : installation_(installation), dialogs_(dialogs), kept_(kept) {}

    /// The criteria, UTF-8.
    struct Fields {
        std::string position;      ///< `Text2`
        std::string term;          ///< `Text3`
        bool hexadecimal = false;  ///< `Combo1` is "HEX"

        friend bool operator==(const Fields&, const Fields&) = default;
    };
    Fields fields;
    bool deleteAllTerms = false;  ///< `Check1`

    /// `Text1`, UTF-8.
    [[nodiscard]] const std::string& extension() const { return extension_; }
    /// In the order of the file, which is the order of evaluation.
    [[nodiscard]] const std::vector<HeaderTerm>& rows() const { return rows_; }
    /// The current row from 0, -1 for none.
    [[nodiscard]] int current() const { return current_; }
    /// True while `Command2` says "Update".
    [[nodiscard]] bool updating() const { return updating_; }
    /// What the hex view shows: the first 512 bytes of the sample; empty before one was opened.
    [[nodiscard]] const std::string& sample() const { return sample_; }

    /// The screen opens: no extension, whose term file is ".dat".
    void load() { setExtension(""); }

    /// The extension changed: its terms replace the rows, from the shared folder when sharing is on and the folder
    /// exists, otherwise from the local one. An extension that cannot be part of a file name has no terms.
    /// Kept: rows that were not saved are gone, at each key press (test TypingThrowsAwayTheRows).
    void setExtension(std::string_view text);

    enum class Opened {
        Shown,    ///< sample and terms are those of the file
        Nothing,  ///< nothing was chosen, or a box told why not
        Failed    ///< the file cannot be read; nothing changed
    };
    /// Asks for a sample file. Its first 512 bytes also go to "fDump.bin" of the application folder, without a line
    /// end. Kept: the extension is all behind the last "." of the whole path, with a part of the path in it when only a
    /// folder's name has a dot (test ADotInAFolderNameGivesAPartOfThePath).
    Opened openSample();

    /// A person chose the type: a hexadecimal term loses its blanks and gets capitals.
    void chooseType(bool hexadecimal);

    enum class Focus { Stays, Extension, Position, Term };
    /// "Add" or "Update", and where the keyboard goes when a box refused it.
    /// Kept: an update that changes nothing asks about its own row (test AnUnchangedUpdateAsksAboutItsOwnRow).
    Focus addOrUpdate();

    /// "Clr".
    void clear();

    /// A row was selected: it goes to the criteria. A row that does not exist is passed over.
    void selectRow(int row);

    /// Captions of the popup, with the current row's term.
    [[nodiscard]] std::string deleteCaption() const;
    [[nodiscard]] std::string commonHeaderCaption() const;

    /// "Delete". With `deleteAllTerms` the term files go (under Kept) after a question; then the rows are written to
    /// the local file; then the current row goes after a question. Kept: in this order the files of all terms come
    /// back, since the rows stay, and a removed row leaves the disk only with the next save (tests
    /// DeletingAllTermsWritesTheLocalFileAgain, TheRemovedRowStaysOnTheDisk).
    void deleteTerms();

    /// Writes the rows to the shared file, when sharing is on and its folder exists, and to the local one. A copy that
    /// fails is passed over. A term file that holds what was not in the list goes under Kept before it is overwritten;
    /// what others did to it since it was loaded is put into the rows first (ListCopies). False: the person did not
    /// wait for another computer, so that the rows are still to be saved.
    bool save();
    /// The same as the screen closes: where the person did not wait, a box asks whether it closes all the same. False:
    /// it stays.
    [[nodiscard]] bool saveToClose();

private:
    [[nodiscard]] NativePath termFileIn(const NativePath& folder) const;
    [[nodiscard]] bool confirmDeleteAll();
    [[nodiscard]] bool checkFields(Focus& focus);
    [[nodiscard]] bool confirmEqualTerm();
    [[nodiscard]] bool acceptsSample(const NativePath& path);
    [[nodiscard]] PageText currentTerm() const;
    void saveTo(const std::vector<NativePath>& folders);
    void moveAway(const NativePath& folder);

    const Installation& installation_;
    Dialogs& dialogs_;
    KeptFiles& kept_;
    std::string extension_;
    std::vector<HeaderTerm> rows_;
    ListCopies copies_{installation_, dialogs_, kept_, kTermForm};
    std::string sample_;
    int current_ = -1;
    bool updating_ = false;
};

}  // namespace quillon
