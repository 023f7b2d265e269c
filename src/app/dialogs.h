// SPDX-License-Identifier: MIT
#pragma once

// What the core asks of a person, whatever the front end: message boxes, text input, pickers. The window shows real
// dialogs; a command answers from its options; tests check title and text. All texts are UTF-8.

#include <optional>
#include <string>
#include <vector>

#include "platform/file.h"

namespace quillon {

/// Plain: no sign. Warning: exclamation sign. Question: question sign. Information: information sign. Critical: stop
/// sign.
enum class BoxStyle { Plain, Warning, Question, Information, Critical };
enum class BoxButtons { Ok, YesNo, YesNoCancel };
enum class BoxAnswer { Ok, Yes, No, Cancel };

/// What a Yes gives up. A list that a job leaves unfinished: a command is told so by an option of its own, and asks
/// nobody. A file that is replaced: Enter alone never says Yes.
enum class BoxLoss { Nothing, PartialList, File };

/// A box without a title of its own shows the program's name.
inline constexpr const char* kProgramTitle = "Quillon";

struct MessageBox {
    std::string title;
    std::string text;
    BoxStyle style = BoxStyle::Plain;
    BoxButtons buttons = BoxButtons::Ok;
    /// A Yes to this one goes on without something that the person counts on: a Yes given ahead to whatever may be
    /// asked is no answer to it.
    bool needsOwnAnswer = false;
    std::string details = {};  ///< more for who asks for it, by a button of the box; empty for no such button
    BoxLoss loss = BoxLoss::Nothing;
};

struct FilePick {
    std::string title;
    std::string filter;  ///< pairs "name|pattern" joined by "|", as "File Lists (*.csv)|*.csv|All Files(*.*)|*.*"
    NativePath startFolder;
    std::string defaultSuffix;
    bool multiple = false;
};

class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// Shows a box and waits. Closing a YesNo box counts as No, a YesNoCancel box as Cancel.
    virtual BoxAnswer show(const MessageBox& box) = 0;
    /// A line of text; no value when the person cancelled.
    [[nodiscard]] virtual std::optional<std::string> input(const std::string& title, const std::string& prompt,
                                                           const std::string& initial) = 0;
    /// A folder; no value when the person cancelled.
    [[nodiscard]] virtual std::optional<NativePath> pickFolder(const std::string& title, const NativePath& start) = 0;
    /// Existing files; empty when the person cancelled.
    [[nodiscard]] virtual std::vector<NativePath> pickFiles(const FilePick& pick) = 0;

    /// Shorthands for the frequent forms.
    void tell(const std::string& title, const std::string& text, BoxStyle style = BoxStyle::Plain);
    void warn(const std::string& title, const std::string& text) { tell(title, text, BoxStyle::Warning); }
    [[nodiscard]] bool ask(const std::string& title, const std::string& text, BoxStyle style = BoxStyle::Question);
};

}  // namespace quillon
