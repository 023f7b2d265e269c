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

#include <QWidget>

#include "setup/network_setup.h"
#include "widgets/control_maker.h"
#include "widgets/navigator.h"
#include "widgets/screen_context.h"

namespace quillon {

class frmSetupNetwork final : public QWidget, private NetworkSetupHost {
    Q_OBJECT

public:
    /// The context must outlive the screen.
    explicit frmSetupNetwork(const ScreenContext& context);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void createControls();
    void connectControls();
    void readInputs();
    void Command1_Click();
    void showState() override;

    const ScreenContext& context_;
    NetworkSetup setup_;
    bool copying_ = false;

    std::array<QCheckBox*, kNetworkBoxCount> Check1{};
    std::array<QPushButton*, 2> Command3{};
    QLabel* Label1 = nullptr;
    QPushButton *Command1 = nullptr, *Command2 = nullptr;
};

}  // namespace quillon
