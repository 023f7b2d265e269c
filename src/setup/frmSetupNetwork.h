// SPDX-License-Identifier: MIT
#pragma once

// "Set up Network": copies files of this computer to the shared folders. The work is NetworkSetup's.
//
//   frameFiles (ours)               "Files to copy to Network"
//     Check1_0 .. Check1_4          "Main Database", "Skiplist", "Common Header database",
//                                   "Use settings on this machine as default", "System messages"
//     Command3_1, Command3_0        "Select All", "Clear All"
//   Label1                          progress
//   Command1 "Copy", Command2 "Cancel"

#include <array>

#include "setup/network_setup.h"
#include "widgets/control_maker.h"
#include "widgets/step_screen.h"

namespace quillon {

class frmSetupNetwork final : public StepScreen {
    Q_OBJECT

public:
    /// The context must outlive the screen.
    explicit frmSetupNetwork(const ScreenContext& context);

private:
    void createControls();
    void connectControls();
    void Command1_Click();
    void showControls() override;
    void leaveOrAsk() override { leave(); }

    NetworkSetup setup_;

    std::array<QCheckBox*, kNetworkBoxCount> Check1{};
    std::array<QPushButton*, 2> Command3{};
    QLabel* Label1 = nullptr;
    QPushButton *Command1 = nullptr, *Command2 = nullptr;
};

}  // namespace quillon
