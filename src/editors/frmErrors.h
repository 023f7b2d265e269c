// SPDX-License-Identifier: MIT
#pragma once

// The report messages: ten texts that grade a file.
//
//   Control                     Caption                    Meaning
//   Frame1                      "Default Error Messages"   (the frame's name is ours)
//   Label1_0, tError_0, to _9   "Header OK", ...           the messages in the order of the file
//   pageRemark_                                            ours: characters that are stored as "?"
//   saveRemark_                                            ours: what a save that failed has left
//   Command1                    "OK"                       saves and leaves; the close box leaves without saving

#include <array>

#include "editors/report_messages_editor.h"
#include "widgets/step_screen.h"

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace quillon {

class frmErrors final : public StepScreen {
    Q_OBJECT

public:
    /// Edits the messages of the job in memory, which outlive the screen, and the files.
    frmErrors(const ScreenContext& context, ReportMessages& messages);

private:
    void createControls();
    void connectControls();
    void Command1_Click();
    void showControls() override;

    ReportMessagesEditor editor_;

    QGroupBox* Frame1;
    std::array<QLabel*, kMessageCount> Label1;
    std::array<QLineEdit*, kMessageCount> tError;
    QLabel* pageRemark_;
    QLabel* saveRemark_;
    QPushButton* Command1;
};

}  // namespace quillon
