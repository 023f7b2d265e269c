// SPDX-License-Identifier: MIT
#pragma once

// The real dialogs of a window program. Every text is shown as plain text, since a recovered file's name is hostile
// input. Object names, for tests and accessibility tools: "MessageBox", "InputBox", "FolderPicker", "FilePicker".

#include "app/dialogs.h"

namespace quillon {

class QtDialogs final : public Dialogs {
public:
    BoxAnswer show(const MessageBox& box) override;
    std::optional<std::string> input(const std::string& title, const std::string& prompt,
                                     const std::string& initial) override;
    std::optional<NativePath> pickFolder(const std::string& title, const NativePath& start) override;
    std::vector<NativePath> pickFiles(const FilePick& pick) override;
};

}  // namespace quillon
