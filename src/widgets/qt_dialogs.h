// SPDX-License-Identifier: MIT
#pragma once

// The real dialogs of a window program. Every text is shown as plain text, since a recovered file's name is hostile
// input. Object names, for tests and accessibility tools: "MessageBox", "InputBox", "FolderPicker", "FilePicker".

#include <functional>
#include <utility>

#include "app/dialogs.h"
#include "app/patient_wait.h"

namespace quillon {

class QtDialogs final : public Dialogs, public PatientDialogs {
public:
    /// `refresh` runs ahead of each dialog, so that the windows behind it show what it asks about.
    explicit QtDialogs(std::function<void()> refresh = [] {}) : refresh_(std::move(refresh)) {}

    BoxAnswer show(const MessageBox& box) override;
    std::optional<std::string> input(const std::string& title, const std::string& prompt,
                                     const std::string& initial) override;
    std::optional<NativePath> pickFolder(const std::string& title, const NativePath& start) override;
    std::vector<NativePath> pickFiles(const FilePick& pick) override;
    bool waitFor(const PatientWait& wait) override;

private:
    std::function<void()> refresh_;
};

}  // namespace quillon
