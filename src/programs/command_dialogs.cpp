// SPDX-License-Identifier: MIT
#include "programs/command_dialogs.h"

#include <istream>
#include <ostream>

#include "text/fields.h"

namespace quillon {

namespace {

constexpr std::chrono::milliseconds kLookForStop{50};

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
    if (!box.details.empty()) {
        toldDetails_ = box.details;
        err_ << "  " << onOneLine(box.details) << '\n';
    }
    return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : ask(box);
}

std::optional<BoxAnswer> CommandDialogs::answerGivenAhead(const MessageBox& box) {
    if (box.loss == BoxLoss::PartialList) {
        err_ << (answers_.discardPartial ? "  answered Yes\n" : "  answered No; --discard-partial answers Yes\n");
        return answers_.discardPartial ? BoxAnswer::Yes : BoxAnswer::No;
    }
    if (!answers_.alwaysYes || box.needsOwnAnswer)
        return std::nullopt;
    err_ << "  answered Yes\n";
    return BoxAnswer::Yes;
}

BoxAnswer CommandDialogs::ask(const MessageBox& box) {
    if (const auto given = answerGivenAhead(box))
        return *given;
    const bool withCancel = box.buttons == BoxButtons::YesNoCancel;
    const BoxAnswer cautious = withCancel ? BoxAnswer::Cancel : BoxAnswer::No;
    if (!answers_.terminal) {
        unasked_ = onOneLine(box.text);
        unaskedNeedsOwnAnswer_ = box.needsOwnAnswer;
        err_ << "  answered " << (withCancel ? "Cancel" : "No") << ", as nobody can be asked\n";
        return cautious;
    }
    err_ << (withCancel ? "  y = Yes, n = No, c = Cancel: " : "  y = Yes, n = No: ") << std::flush;
    while (const auto line = typedLine()) {
        const char letter = line->empty() ? ' ' : line->front();
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

// No value at the end of the input, and when the job is to stop: no person has to answer first.
std::optional<std::string> CommandDialogs::typedLine() {
    while (in_.rdbuf()->in_avail() <= 0 && !answers_.inputWaits(kLookForStop)) {
        if (answers_.stopAsked())
            return std::nullopt;
    }
    std::string line;
    if (answers_.stopAsked() || !std::getline(in_, line))
        return std::nullopt;
    return line;
}

}  // namespace quillon
