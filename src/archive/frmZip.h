// SPDX-License-Identifier: MIT
#pragma once

// "Zip File Lists": packs the lists of a job into an archive and can tell another computer. The work is ZipFileLists';
// the screen hands inputs in and shows the state that comes out.
//
//   Frame1 "Selected Files"
//     iGrid1                        "Files to ZIP"            one path a row
//     Label2                        "Doublie-click file to remove file"
//     Command1                      "Add File"
//     Command5                      "Reload"                  the lists of the job anew
//     Check3                        "Ignore Separator"        all lists that begin with the job's number
//   frameArchive (ours) "Archive"
//     labelJob, Text1 (ours, given) "Job ID"                  names the archive, up to the last separator
//     labelSeparator, Text2         "Separator"
//     Label1, Text3                 "Add Password"
//     Check1                        "Mask Password"
//     Check2                        "Retain raw file lists"
//     Command2                      "Change destination"      archive folder
//   frameNotify (ours) "Notification"
//     Label3, Combo1                "Net send to"             recipient
//     Command7                      "Query Network"
//     Command8                      "Test"
//     Check4, Check5                "Show Company", "Show Computer": no output depends on them
//   labelNotice (ours)              where the archive goes and stands, and what is waited for
//   ProgressBar1                    while the archive is written
//   buttonCancel (ours) "Cancel"    ends the writing with everything as it was
//   Command4 "Zip", Command6 "Zip and Email" (never shown), Command3 "Close"

#include <memory>

#include <QComboBox>
#include <QLineEdit>
#include <QTimer>

#include "archive/zip_file_lists.h"
#include "archive/zip_handover.h"
#include "messaging/alert_exchange.h"
#include "messaging/network_enum.h"
#include "platform/datagram_socket.h"
#include "widgets/control_maker.h"
#include "widgets/elided_label.h"
#include "widgets/grid.h"
#include "widgets/step_screen.h"

namespace quillon {

/// Where the screen finds other computers; null looks nowhere.
using SharedNetwork = std::shared_ptr<NetworkProvider>;

class frmZip final : public StepScreen {
    Q_OBJECT

public:
    /// The context must outlive the screen.
    frmZip(const ScreenContext& context, ZipHandover handOver, SharedNetwork network);

private:
    void createControls();
    [[nodiscard]] QWidget* createFiles();
    [[nodiscard]] QWidget* createArchive();
    [[nodiscard]] QWidget* createNotification();
    [[nodiscard]] QLayout* createCommands();
    void connectControls();
    void hearPlainInputs();
    void showFiles();
    void showNotice();
    void removeFile(int row);
    void Command7_Click();
    void showControls() override;

    SharedNetwork network_;
    UdpSocket wServer_;
    UdpSocket wClient_;
    AlertExchange exchange_;
    ZipFileLists zip_;

    Grid* iGrid1 = nullptr;
    QPushButton *Command1 = nullptr, *Command2 = nullptr, *Command3 = nullptr, *Command4 = nullptr, *Command5 = nullptr,
                *Command6 = nullptr, *Command7 = nullptr, *Command8 = nullptr;
    QCheckBox *Check1 = nullptr, *Check2 = nullptr, *Check3 = nullptr, *Check4 = nullptr, *Check5 = nullptr;
    QLineEdit *Text1 = nullptr, *Text2 = nullptr, *Text3 = nullptr;
    QComboBox* Combo1 = nullptr;
    QProgressBar* ProgressBar1 = nullptr;
    ElidedLabel* labelNotice_ = nullptr;
    QTimer lookAgain_;
    QPushButton* buttonCancel_ = nullptr;
};

}  // namespace quillon
