// SPDX-License-Identifier: MIT
#include "programs/command_dialogs.h"

#include <istream>
#include <ostream>

#include "text/fields.h"

namespace quillon {

namespace {

// One line, whatever line ends the text has.
std::string onOneLine(const std::string& text) {
    std::string line;
    for (const auto piece : splitLines(text)) {
        const auto words = trim(piece);
        if (words.empty())
            continue;
        if (!line.empty())
            line += ' ';
        line += words;
    }
    return line;
}

}  // namespace

BoxAnswer CommandDialogs::show(const MessageBox& box) {
    err_ << box.title << ": " << onOneLine(box.text) << '\n';
    return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : ask(box);
}

BoxAnswer CommandDialogs::ask(const MessageBox& box) {
    const bool withCancel = box.buttons == BoxButtons::YesNoCancel;
    const BoxAnswer cautious = withCancel ? BoxAnswer::Cancel : BoxAnswer::No;
    if (alwaysYes_ && !box.needsOwnAnswer) {
        err_ << "  answered Yes\n";
        return BoxAnswer::Yes;
    }
    if (!terminal_) {
        unasked_ = onOneLine(box.text);
        unaskedNeedsOwnAnswer_ = box.needsOwnAnswer;
        err_ << "  answered " << (withCancel ? "Cancel" : "No") << ", as nobody can be asked\n";
        return cautious;
    }
    std::string line;
    err_ << (withCancel ? "  y = Yes, n = No, c = Cancel: " : "  y = Yes, n = No: ") << std::flush;
    while (std::getline(in_, line)) {
        const char letter = line.empty() ? ' ' : line.front();
        if (letter == 'y' || letter == 'Y')
            return BoxAnswer::Yes;
        if (letter == 'n' || letter == 'N')
            return BoxAnswer::No;
        if (withCancel && (letter == 'c' || letter == 'C'))
            return BoxAnswer::Cancel;
        err_ << "  please type one of the letters: " << std::flush;
    }
    return cautious;
}

}  // namespace quillon
