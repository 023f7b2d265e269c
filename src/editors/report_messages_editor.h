// SPDX-License-Identifier: MIT
#pragma once

// The ten report messages as their screen edits them, without the screen. docs/formats/rule-lists.md.

#include <array>
#include <string>

#include "app/dialogs.h"
#include "app/installation.h"
#include "app/kept_files.h"
#include "editors/list_copies.h"
#include "testing/report_messages.h"

namespace quillon {

/// What stands beside a box, and in it until the file was read.
struct MessageField {
    const char* label;
    const char* text;
};
inline constexpr std::array<MessageField, kMessageCount> kMessageFields{{
    {"Header OK", "Header OK"},
    {"Header corrupt", "Header Corrupt"},
    {"No file extension", "No Extension"},
    {"Unknown file type", "Unknown or ambiguous file type"},
    {"File encrypted", "File encrypted"},
    {"Access error", "Access error"},
    {"File too small to test", "File too small to test (<512 bytes)"},
    {"File zero bytes", "File is zero length"},
    {"Bad filename", "Bad filename"},
    {"Common Header", "Appears to be of file type : "},
}};

class ReportMessagesEditor {
public:
    /// All must outlive this. `messages` are those that the jobs of this program use.
    ReportMessagesEditor(const Installation& installation, Dialogs& dialogs, KeptFiles& kept, ReportMessages& messages);

    std::array<std::string, kMessageCount> texts;  ///< `tError(0)` to `tError(9)`, UTF-8; at first the screen's own
    std::string failure;  ///< what the last save has left undone, and why; empty when all is done. UTF-8

    /// Reads ten items of the local "Errors.dat" into the texts. A missing or short file leaves the texts that were not
    /// reached.
    /// Kept: an item ends at a comma too, so that a message with a comma shifts the later boxes (test
    /// ACommaShiftsTheLaterBoxes).
    void load();

    /// Writes the local file, then with sharing on the shared one, and loads the messages from them. A common header
    /// message that does not end in ":" gets one first. False when a file could not be written: the save ended there.
    /// Without the local file the messages of the program are as they were; without the shared one they are those of
    /// the local file. A file of which the boxes could not show all goes under Kept before it is overwritten.
    [[nodiscard]] bool save();

private:
    [[nodiscard]] std::string fileBytes() const;
    [[nodiscard]] std::vector<NativePath> copies() const;
    void show(const Records& messages);

    const Installation& installation_;
    Dialogs& dialogs_;
    KeptFiles& kept_;
    ReportMessages& messages_;
    ListCopies copies_;
};

}  // namespace quillon
