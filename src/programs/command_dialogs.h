// SPDX-License-Identifier: MIT
#pragma once

// The dialogs of a command: boxes are lines on the error stream, questions are answered by an option or on the
// terminal, and without either by the cautious answer.

#include <iosfwd>
#include <string>

#include "app/dialogs.h"

namespace quillon {

class CommandDialogs final : public Dialogs {
public:
    /// `alwaysYes` answers every question but those that need an answer of their own; for these and without it
    /// `terminal` tells whether a person can be asked on `in`.
    CommandDialogs(std::istream& in, std::ostream& err, bool alwaysYes, bool terminal)
        : in_(in), err_(err), alwaysYes_(alwaysYes), terminal_(terminal) {}

    BoxAnswer show(const MessageBox& box) override;
    std::optional<std::string> input(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<NativePath> pickFolder(const std::string&, const NativePath&) override { return std::nullopt; }
    std::vector<NativePath> pickFiles(const FilePick&) override { return {}; }

    /// The question that was last answered cautiously because nobody could be asked; empty if none was.
    [[nodiscard]] const std::string& unasked() const { return unasked_; }
    /// True when `alwaysYes` would not have answered it either.
    [[nodiscard]] bool unaskedNeedsOwnAnswer() const { return unaskedNeedsOwnAnswer_; }

private:
    [[nodiscard]] BoxAnswer ask(const MessageBox& box);

    std::istream& in_;
    std::ostream& err_;
    bool alwaysYes_;
    bool terminal_;
    std::string unasked_;
    bool unaskedNeedsOwnAnswer_ = false;
};

}  // namespace quillon
