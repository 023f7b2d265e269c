// SPDX-License-Identifier: MIT
#pragma once

// Scripted dialogs in front of which a person may wait for another computer, or leave.

#include <functional>

#include "app/patient_wait.h"
#include "support/scripted_dialogs.h"

namespace quillon::test {

class WaitingDialogs final : public Dialogs, public PatientDialogs {
public:
    /// Answers all but waits; must outlive this.
    explicit WaitingDialogs(Dialogs& others) : others_(others) {}

    BoxAnswer show(const MessageBox& box) override { return others_.show(box); }
    std::optional<std::string> input(const std::string& title, const std::string& prompt,
                                     const std::string& initial) override {
        return others_.input(title, prompt, initial);
    }
    std::optional<NativePath> pickFolder(const std::string& title, const NativePath& start) override {
        return others_.pickFolder(title, start);
    }
    std::vector<NativePath> pickFiles(const FilePick& pick) override { return others_.pickFiles(pick); }
    bool waitFor(const PatientWait& wait) override { return onWait(wait); }
    [[nodiscard]] std::chrono::milliseconds unnoticed() const override { return noticedAfter; }

    /// What becomes of a wait.
    std::function<bool(const PatientWait&)> onWait;
    /// None where somebody has to be waited for, and long where nobody has: so no test depends on how busy the machine
    /// is.
    std::chrono::milliseconds noticedAfter{0};

private:
    Dialogs& others_;
};

}  // namespace quillon::test
