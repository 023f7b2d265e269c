// SPDX-License-Identifier: MIT
#pragma once

// The manual database update: the terms of one extension, typed or looked up in a sample file. Every way out saves.
//
//   Frame                     Control          Caption                          Meaning
//   menu "File" (mnuFle)      mnuOpen          "Open"                           opens a sample file
//   popup "Edit" (mnuEdit)    mnuDelete        "Delete the term '...'"          as Command1
//                             mnub1            "-"                              separator
//                             mnuCommonHeader  "Add '...' to common headers"    no function
//   Frame2 "Criteria"         Label5, Text1    "Ext"                            the extension; typing loads its terms
//                             Command4         "..."                            as mnuOpen
//                             Label6           "Type extension or open file"
//                             Label2, Text2    "Position"                       position of the term
//                             Label3           "(0 = Anywhere)"
//                             Label1, Text3    "Term"                           the term
//                             pageRemark_                                       ours: characters stored as "?"
//                             Label4, Combo1   "Type"; "Text", "HEX"            its type
//                             Command2         "Add" / "Update"                 puts the fields into the list
//                             Command3         "Clr"                            empties the fields
//                             advice_                                           ours: what the term would let through
//   Frame3 "Existing Terms"   iGrid1           "Term", "Offset", "Type"         the terms
//                             Command1         "Delete"                         deletes
//                             Check1           "Delete all terms"               widens "Delete"
//                             Command5         "Done"                           saves and leaves
//   Frame1 "Hex View"         Hex1                                              first 512 bytes of the sample

#include "editors/manual_update.h"
#include "editors/term_advice.h"
#include "widgets/step_screen.h"

class QAction;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;

namespace quillon {

class Grid;
class HexView;

class frmUpdatedb final : public StepScreen {
    Q_OBJECT

public:
    explicit frmUpdatedb(const ScreenContext& context);

private:
    void createMenus();
    void createCriteria();
    void createTerms();
    void arrangeCriteria();
    void arrange();
    void connectControls();
    void mnuOpen_Click();
    void Command2_Click();
    void openMenu(int row, const QPoint& position);
    void showControls() override;
    void leaveOrAsk() override;
    [[nodiscard]] std::optional<std::string> lookForAdvice();

    ManualUpdate editor_;
    TermAdvice terms_;

    QMenu* mnuFle;
    QAction* mnuOpen;
    QMenu* mnuEdit;
    QAction* mnuDelete;
    QAction* mnub1;
    QAction* mnuCommonHeader;
    QGroupBox* Frame2;
    QLabel* Label5;
    QLineEdit* Text1;
    QPushButton* Command4;
    QLabel* Label6;
    QLabel* Label2;
    QLineEdit* Text2;
    QLabel* Label3;
    QLabel* Label1;
    QLineEdit* Text3;
    QLabel* pageRemark_;
    QLabel* advice_;
    QLabel* Label4;
    QComboBox* Combo1;
    QPushButton* Command2;
    QPushButton* Command3;
    QGroupBox* Frame3;
    Grid* iGrid1;
    QPushButton* Command1;
    QCheckBox* Check1;
    QPushButton* Command5;
    QGroupBox* Frame1;
    HexView* Hex1;
};

}  // namespace quillon
