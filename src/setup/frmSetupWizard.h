// SPDX-License-Identifier: MIT
#pragma once

// "Setup Wizard": sets an installation up or edits its settings, tab by tab. The work is SetupWizard's; the screen
// hands inputs in and shows the state that comes out. Frames have no given names; ours begin with "frame".
//
//   Label1                          "Setup the ZOV Software"  heading
//   SftTabs1, tab "Setup DB"
//     frameMethod                   "Setup Method"
//     Label3                        "I want to setup my system by .."
//     Option1_0, Option1_1          "Importing a current setup", "Manually Setup this sytem"
//     Label4                        a text that follows the choice
//     Command1                      "Next >"
//   tab "Local Paths"
//     frameLocal                    "Local Paths"
//     Label5                        guide text
//     Label7, Text1, Command2       "Local Path", shown only, "Browse"
//     Label8, Text2, Command3       "Archive Path", shown only, "Browse"
//     Label6                        hint to browse, shown after a key press in a path
//     Command6                      "Next >"
//   tab "Shared Path"
//     frameShared                   "Shared DB Path"
//     Label9                        what the shared path is for
//     Check5                        "Use Shared DB (Recommended))"
//     Label10, Text3, Command4      "Shared DB Path", shown only, "Browse"
//     Check1                        "Test Network R/W Operations": read by nothing
//     Label11                       hint to browse
//     Command7                      "Next >"
//   tab "Defaults"
//     frameDefaults                 "Set Program Default Testing Settings"
//     Label12; Check2 "Run File Header Test", Check3 "Use Skip List", Check4 "Use Common Headers"
//     Label19, Text4                "File list separator": without effect
//     Command8                      "Next >"
//   tab "Alerts"
//     frameAlerts                   "Alerts"
//     Label13
//     Label14, Combo1, Command9, Command13    computer for automatic alerts, "Query" or "Test", "Revert"
//     Label15, Combo2, Command10, Command15   computer for 'file zipped' notifications
//     Command11                     "Next >"
//   tab "Export"
//     frameExport, frameSave        "Export Settings", "Save Settings"
//     Label16, Command12            "Export"
//     Label20, Command14            "Done"
//   tab "Done"                      empty; no step leads to it
//   Label17, Label18                status lines
//   ProgressBar1; Command5 "Exit"; Timer1 hides the hints

#include <array>
#include <memory>

#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>

#include "messaging/alert_exchange.h"
#include "platform/datagram_socket.h"
#include "setup/wizard.h"
#include "widgets/control_maker.h"
#include "widgets/step_screen.h"

class QTimer;
class QVBoxLayout;

namespace quillon {

class frmSetupWizard final : public StepScreen {
    Q_OBJECT

public:
    /// The context must outlive the screen. A null network finds no computers.
    frmSetupWizard(const ScreenContext& context, std::shared_ptr<NetworkProvider> network);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createControls();
    [[nodiscard]] QWidget* createMethodTab();
    [[nodiscard]] QWidget* createLocalTab();
    [[nodiscard]] QWidget* createSharedTab();
    [[nodiscard]] QWidget* createDefaultsTab();
    [[nodiscard]] QWidget* createAlertsTab();
    [[nodiscard]] QWidget* createExportTab();
    void connectControls();
    void connectSteps();
    void hearPlainInputs();
    void connectRecipients();
    void showPaths();
    void showChecks();
    static void showRecipients(const RecipientBox& shown, QComboBox& box, QPushButton& button);

    void showControls() override;
    void leaveOrAsk() override;
    void end(WizardEnd end);

    UdpSocket wServer_;
    UdpSocket wClient_;
    AlertExchange exchange_;
    SetupWizard wizard_;

    QTabWidget* SftTabs1 = nullptr;
    std::array<QRadioButton*, 2> Option1{};
    QLabel *Label4 = nullptr, *Label5 = nullptr, *Label6 = nullptr, *Label11 = nullptr, *Label17 = nullptr,
           *Label18 = nullptr;
    QLineEdit *Text1 = nullptr, *Text2 = nullptr, *Text3 = nullptr, *Text4 = nullptr;
    QCheckBox *Check1 = nullptr, *Check2 = nullptr, *Check3 = nullptr, *Check4 = nullptr, *Check5 = nullptr;
    QComboBox *Combo1 = nullptr, *Combo2 = nullptr;
    QPushButton *Command1 = nullptr, *Command2 = nullptr, *Command3 = nullptr, *Command4 = nullptr, *Command5 = nullptr,
                *Command6 = nullptr, *Command7 = nullptr, *Command8 = nullptr, *Command9 = nullptr,
                *Command10 = nullptr, *Command11 = nullptr, *Command12 = nullptr, *Command13 = nullptr,
                *Command14 = nullptr, *Command15 = nullptr;
    QProgressBar* ProgressBar1 = nullptr;
    QTimer* Timer1 = nullptr;
};

}  // namespace quillon
