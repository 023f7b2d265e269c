// SPDX-License-Identifier: MIT
#pragma once

// All that the screen "Setup Wizard" shows. The screen shows the fields, writes its plain inputs back and calls the
// operations of SetupWizard. Texts are UTF-8; a path is shown by `readable`.

#include <array>
#include <string>

#include "messaging/recipient_box.h"
#include "platform/file.h"

namespace quillon {

/// Indexes of `SftTabs1`.
enum WizardTab : std::size_t {
    kSetupDbTab,
    kLocalPathsTab,
    kSharedPathTab,
    kDefaultsTab,
    kAlertsTab,
    kExportTab,
    kDoneTab,
    kWizardTabCount
};

/// Indexes of `Option1`.
enum class SetupMethod { None = -1, Import = 0, Manual = 1 };

/// How long the hint about the browse button stays: the interval of `Timer1`.
inline constexpr int kHintMilliseconds = 6000;

struct SetupWizardState {
    std::size_t currentTab = kSetupDbTab;  ///< SftTabs1
    std::array<bool, kWizardTabCount> tabEnabled{true};

    // "Setup DB"
    SetupMethod method = SetupMethod::None;  ///< Option1
    std::string methodText;                  ///< Label4
    bool methodNextEnabled = false;          ///< Command1

    // "Local Paths"
    std::string guide;                   ///< Label5
    NativePath localPath;                ///< Text1
    NativePath archivePath;              ///< Text2
    bool browseArchiveEnabled = false;   ///< Command3
    bool localPathsNextEnabled = false;  ///< Command6
    bool localHintVisible = false;       ///< Label6

    // "Shared Path"
    bool useSharedDb = false;            ///< Check5
    bool testNetwork = false;            ///< Check1; nothing reads it
    NativePath sharedPath;               ///< Text3
    bool sharedPathNextEnabled = false;  ///< Command7
    bool sharedHintVisible = false;      ///< Label11

    // "Defaults"
    bool runHeaderTest = false;     ///< Check2
    bool useSkipList = false;       ///< Check3
    bool useCommonHeaders = false;  ///< Check4
    std::string separator;          ///< Text4; never filled and never read

    // "Alerts"
    RecipientBox alertRecipients;  ///< Combo1 and Command9
    RecipientBox zipRecipients;    ///< Combo2 and Command10

    // Always there
    std::string copyStatus;        ///< Label17
    std::string networkStatus;     ///< Label18
    bool progressVisible = false;  ///< ProgressBar1
    double progress = 0;           ///< ProgressBar1, 0 to 100
    bool busyPointer = false;      ///< hourglass
};

}  // namespace quillon
