// SPDX-License-Identifier: MIT
#pragma once

// The folder tree of an installation: its check, its repair, and the decision which screen a start opens.

#include <functional>

#include "app/installation.h"

namespace quillon {

/// Creates every missing folder from the root to the last element. Failures on the way are passed over, as an upper
/// level of a share may be out of reach. True when the path exists afterwards. A path that is not absolute is not
/// created.
bool CreateFolderPath(const NativePath& path);

/// Creates every missing folder of `path` but the last element, which is taken for a file name. Paths may be of any
/// length.
void createFolderChain(const NativePath& path);

/// True when the structure is whole: settings file, local settings, local database and archive folders and, with
/// sharing on, the shared root and its database. Missing folders are created; only those that cannot be count as
/// missing.
///
/// Kept: a failed check repairs what it can and still answers false, so that it leads straight to setup (test
/// AFailedCheckAnswersFalseAlthoughTheRepairSucceeded). Kept: the shared settings folder is created by the repair alone
/// (test SharedSettingsAreCreatedOnlyByTheRepair).
[[nodiscard]] bool checkFolderStructure(const Installation& installation);

enum class FirstScreen { MainWindow, SetupWizard };

/// Which screen the start opens. Loads the settings when the file has content. An empty settings file opens the main
/// window with its own defaults; no file, a folder structure that is not whole, or any error opens the wizard.
/// `whenLoaded` is called between the settings and the first look at folders that may lie on a share.
[[nodiscard]] FirstScreen decideFirstScreen(Installation& installation, const std::function<void()>& whenLoaded = {});

}  // namespace quillon
