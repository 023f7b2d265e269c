// SPDX-License-Identifier: MIT
#pragma once

// The About screen. The names of its controls are ours.
//
//   Control     Caption                          Meaning
//   Picture1                                     the program's icon
//   Label1      "Quillon"                        name of the product
//   Label2      "Version : " and the version
//   Label3      "The Quillon project, " and year maker and year
//   Label4                                       address of the project's pages
//   Command1    "OK"                             closes the screen
//
// It has no input, no step and no state to show, so it is a plain dialog and no StepScreen.

#include <QDialog>

namespace quillon {

class frmABout final : public QDialog {
    Q_OBJECT

public:
    frmABout();
};

}  // namespace quillon
