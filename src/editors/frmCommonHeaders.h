// SPDX-License-Identifier: MIT
#pragma once

// The Common Headers screen. The list is saved by "Done" alone; the close box leaves the files as they are.
//
//   Control             Caption                    Meaning
//   Label1, tID         "ID"                       name of the file type (the label's name is ours, as that of Label2,
//                                                  Label5 and Label6)
//   Label2, tTerm       "Term"                     the term
//   Label5, tOffset     "Offset"                   its position, 0 for anywhere
//   Label6, cboType     "Type"; "Text", "Hex"      kind of term
//   pageRemark_                                    ours: characters that are stored as "?"
//   advice_                                        ours: what the term would meet
//   Command1            "Add" / "Update"           puts the fields into the list; the right button changes the mode
//   Command2            "Clear"                    empties the fields
//   Label3              "Right click on Update button to toggle input mode.", in update mode
//   Label4              "Current Prefix : "        head of the result of a common header
//   iGrid1              "ID", "Term", "Pos", "Type"  the list
//   mnuMenu, mnuDelete  "Menu", "Delete Selection"   its popup
//   Command3            "Delete Selected"          deletes the selected row
//   Check1              "Enable Delete all"        safety switch of Command5
//   Command5            "Delete All"               deletes the whole list
//   Command4            "Done"                     saves and leaves

#include "editors/common_headers_editor.h"
#include "editors/term_advice.h"
#include "widgets/step_screen.h"

class QAction;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;

namespace quillon {

class Grid;

class frmCommonHeaders final : public StepScreen {
    Q_OBJECT

public:
    /// Context and messages must outlive the screen.
    frmCommonHeaders(const ScreenContext& context, const ReportMessages& messages);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createEntry();
    void createList();
    void arrange();
    void connectControls();
    void Command1_Click();
    void openMenu(int row, const QPoint& position);
    void showControls() override;

    [[nodiscard]] std::optional<std::string> lookForAdvice();

    const ReportMessages& messages_;
    CommonHeadersEditor editor_;
    TermAdvice terms_;

    QLabel* Label1;
    QLineEdit* tID;
    QLabel* Label2;
    QLineEdit* tTerm;
    QLabel* pageRemark_;
    QLabel* advice_;
    QLabel* Label5;
    QLineEdit* tOffset;
    QLabel* Label6;
    QComboBox* cboType;
    QPushButton* Command1;
    QPushButton* Command2;
    QLabel* Label3;
    QLabel* Label4;
    Grid* iGrid1;
    QMenu* mnuMenu;
    QAction* mnuDelete;
    QPushButton* Command3;
    QCheckBox* Check1;
    QPushButton* Command5;
    QPushButton* Command4;
};

}  // namespace quillon
