// SPDX-License-Identifier: MIT
#pragma once

// An installation with local root and share for the editors, and the small things that their tests ask of it.

#include <string>
#include <string_view>

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "setup/setup_folders.h"

namespace quillon::test {

class EditorFolders : public SetupFolders {
public:
    explicit EditorFolders(bool sharing = false) { share(sharing); }

    void share(bool on) {
        installation.settings.useSharedDb = on ? 1 : 0;
        installation.refreshPathVariables();
    }

    /// True for a file or folder of this name below the root of all.
    [[nodiscard]] bool has(std::string_view name) const { return pathExists(folder / name); }

    /// The bytes of a file, "(missing)" when there is none.
    [[nodiscard]] std::string bytesOf(std::string_view name) const {
        return readWholeFile(folder / name).value_or("(missing)");
    }

    ScriptedDialogs& dialogs = fake.dialogs;
};

}  // namespace quillon::test
