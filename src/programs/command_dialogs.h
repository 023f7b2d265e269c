// SPDX-License-Identifier: MIT
#pragma once

// The dialogs of a command: boxes are lines on the error stream, questions are answered by an option or on the
// terminal, and without either by the cautious answer.

#include <chrono>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>

#include "app/dialogs.h"

namespace quillon {

/// Where the answers of a command come from.
struct CommandAnswers {
    bool alwaysYes = false;       ///< to every question but those that need an answer of their own
    bool discardPartial = false;  ///< to the question for the partial list, which nobody else is asked
    bool terminal = false;        ///< a person can be asked
    std::function<bool()> stopAsked = [] { return false; };  ///< the cautious answer then is good enough
    /// True when the person has typed a line; waits for it, but not longer than the pause.
    std::function<bool(std::chrono::milliseconds)> inputWaits = [](std::chrono::milliseconds) { return true; };
};

class CommandDialogs final : public Dialogs {
public:
    /// Both streams must outlive this.
    CommandDialogs(std::istream& in, std::ostream& err, CommandAnswers answers)
        : in_(in), err_(err), answers_(std::move(answers)) {}

    BoxAnswer show(const MessageBox& box) override;
    std::optional<std::string> input(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<NativePath> pickFolder(const std::string&, const NativePath&) override { return std::nullopt; }
    std::vector<NativePath> pickFiles(const FilePick&) override { return {}; }

    /// What stood behind the button of the last box that had one, as it was printed.
    [[nodiscard]] const std::string& toldDetails() const { return toldDetails_; }
    /// The question that was last answered cautiously because nobody could be asked; empty if none was.
    [[nodiscard]] const std::string& unasked() const { return unasked_; }
    /// True when `alwaysYes` would not have answered it either.
    [[nodiscard]] bool unaskedNeedsOwnAnswer() const { return unaskedNeedsOwnAnswer_; }

private:
    [[nodiscard]] BoxAnswer ask(const MessageBox& box);
    [[nodiscard]] std::optional<BoxAnswer> answerGivenAhead(const MessageBox& box);
    [[nodiscard]] std::optional<std::string> typedLine();

    std::istream& in_;
    std::ostream& err_;
    CommandAnswers answers_;
    std::string toldDetails_;
    std::string unasked_;
    bool unaskedNeedsOwnAnswer_ = false;
};

}  // namespace quillon
