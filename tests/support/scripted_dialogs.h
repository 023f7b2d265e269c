// SPDX-License-Identifier: MIT
#pragma once

// Dialogs that answer from a script. Every question must be expected, with its title and text to the letter; an
// unexpected one fails the test, and so does an answer left over at the end.

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "app/dialogs.h"

namespace quillon::test {

class ScriptedDialogs final : public Dialogs {
public:
    ScriptedDialogs();
    ~ScriptedDialogs() override;

    /// The next box must have this title and text; style and buttons are checked when given.
    void expectBox(std::string title, std::string text, BoxAnswer answer = BoxAnswer::Ok,
                   std::optional<BoxStyle> style = std::nullopt, std::optional<BoxButtons> buttons = std::nullopt);
    void expectInput(std::string title, std::string prompt, std::optional<std::string> answer,
                     std::optional<std::string> initial = std::nullopt);
    void expectFolder(std::string title, std::optional<NativePath> answer);
    void expectFiles(std::string title, std::vector<NativePath> answer);

    BoxAnswer show(const MessageBox& box) override;
    std::optional<std::string> input(const std::string& title, const std::string& prompt,
                                     const std::string& initial) override;
    std::optional<NativePath> pickFolder(const std::string& title, const NativePath& start) override;
    std::vector<NativePath> pickFiles(const FilePick& pick) override;

    /// Told of every mismatch. At first it adds a GoogleTest failure; a screen test gives its own.
    std::function<void(const std::string&)> onProblem;

    /// What stood behind the button of the last box; empty where it had none.
    [[nodiscard]] const std::string& lastDetails() const { return lastDetails_; }
    /// What was picked for last, to check filter and start folder.
    [[nodiscard]] const FilePick& lastPick() const { return lastPick_; }
    [[nodiscard]] const NativePath& lastStart() const { return lastStart_; }
    [[nodiscard]] bool done() const { return script_.empty(); }

private:
    struct Box {
        std::string title;
        std::string text;
        BoxAnswer answer;
        std::optional<BoxStyle> style;
        std::optional<BoxButtons> buttons;
    };
    struct Input {
        std::string title;
        std::string prompt;
        std::optional<std::string> answer;
        std::optional<std::string> initial;
    };
    struct Folder {
        std::string title;
        std::optional<NativePath> answer;
    };
    struct Files {
        std::string title;
        std::vector<NativePath> answer;
    };
    using Step = std::variant<Box, Input, Folder, Files>;

    void check(const std::string& what, const std::string& seen, const std::string& expected);
    template <typename Kind>
    std::optional<Kind> take(const std::string& what);

    std::deque<Step> script_;
    FilePick lastPick_;
    NativePath lastStart_;
    std::string lastDetails_;
};

}  // namespace quillon::test
