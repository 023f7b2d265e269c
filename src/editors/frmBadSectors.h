// SPDX-License-Identifier: MIT
#pragma once

// Composes a bad sector marker to be looked at. The marker is stored nowhere and tested by nothing.
//
//   Frame                  Control                  Caption                           Meaning
//   Frame1 "Bad sectors"   Label1, tBadsector       "Marker Text"                     the marker
//   (the frame's name      Label2, UniTextBoxEx1    "Position in sector"              no function
//   is ours)               Check1                   "Text repeats throughout sector"  no function
//                          iGrid1                                                     no function
//                          Command1                 "Add"                             no function
//                          Command3                 "Preview"                         shows the sector
//                          Command2                 "Done"                            closes the screen

#include "widgets/step_screen.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace quillon {

class Grid;

class frmBadSectors final : public StepScreen {
    Q_OBJECT

public:
    explicit frmBadSectors(const ScreenContext& context);

private:
    void createControls();
    void arrange();
    void Command3_Click();
    void leaveOrAsk() override;

    QGroupBox* Frame1;
    QLabel* Label1;
    QLineEdit* tBadsector;
    QLabel* Label2;
    QLineEdit* UniTextBoxEx1;
    QCheckBox* Check1;
    Grid* iGrid1;
    QPushButton* Command1;
    QPushButton* Command3;
    QPushButton* Command2;
};

}  // namespace quillon
