// SPDX-License-Identifier: MIT
#pragma once

// The screen "Database History", all of it ours: who changed the term files and rule lists, what became of them, and
// taking a change back.
//
//   Control     Caption                     Meaning
//   heading_                                which database, and how many changes
//   changes_    "When", "What", "Screen", "Computer", "User", "Job"   the changes, newest first
//   details_                                the chosen change in full
//   effect_                                 what it did to the grades of heads that jobs have kept
//   noteLabel_, note_  "Note"               a remark about the chosen change
//   addNote_    "Add Note"                  puts it down
//   undo_       "Undo This Change"          asks and takes it back, as a new change
//   done_       "Done"                      leaves

#include "editors/history_browser.h"
#include "widgets/step_screen.h"

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace quillon {

class Grid;

class frmHistory final : public StepScreen {
    Q_OBJECT

public:
    /// The context must outlive the screen.
    explicit frmHistory(const ScreenContext& context);

private:
    void createControls();
    void arrange();
    void connectControls();
    void showControls() override;

    HistoryBrowser browser_;

    QLabel* heading_;
    Grid* changes_;
    QPlainTextEdit* details_;
    QLabel* effect_;
    QLabel* noteLabel_;
    QLineEdit* note_;
    QPushButton* addNote_;
    QPushButton* undo_;
    QPushButton* done_;
};

}  // namespace quillon
