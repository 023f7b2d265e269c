// SPDX-License-Identifier: MIT
#pragma once

// The Skip List screen. Every change is saved at once; there is no cancel.
//
//   Frame                   Control             Caption                   Meaning
//   menu "File" (mnu)       mnuLoad             "Load"                    takes the list from a file
//                           mnuHelp             "Help"                    opens the help
//   Frame2 "Criteria"       Label1, TextBox1    "Term"                    the term being edited
//                           pageRemark_                                   ours: characters stored as "?"
//                           Command1            "Add" / "Update"          puts the term into the list
//                           Command3            "Clear"                   empties the entry, goes back to "Add"
//   Frame1 "Current Terms"  iGrid1              "Term"                    the list
//                           Command2            "Delete"                  deletes the selected term
//                           Command4            "Done"                    closes the screen

#include "editors/skip_list_editor.h"
#include "widgets/step_screen.h"

class QAction;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;

namespace quillon {

class Grid;

class frmSkipList final : public StepScreen {
    Q_OBJECT

public:
    explicit frmSkipList(const ScreenContext& context);

private:
    void createControls();
    void arrange();
    void connectControls();
    void showControls() override;
    void leaveOrAsk() override;

    SkipListEditor editor_;

    QMenu* mnu;
    QAction* mnuLoad;
    QAction* mnuHelp;
    QGroupBox* Frame2;
    QLabel* Label1;
    QLineEdit* TextBox1;
    QLabel* pageRemark_;
    QPushButton* Command1;
    QPushButton* Command3;
    QGroupBox* Frame1;
    Grid* iGrid1;
    QPushButton* Command2;
    QPushButton* Command4;
};

}  // namespace quillon
