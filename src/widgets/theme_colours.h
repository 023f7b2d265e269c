// SPDX-License-Identifier: MIT
#pragma once

// The colours of both looks, and where they stand as text upon each other. Every such pair has a contrast of at least
// 4.5:1, also what is switched off: it tells what a running job works on.

#include <span>

#include <QColor>

namespace quillon {

enum class Look { Light, Dark };

struct Colours {
    QColor window, panel, base, alternate;  ///< grounds
    QColor text, quietText, quiet;          ///< usual text, remarks, what is switched off
    QColor button, line, edge;
    QColor accent, accentHover, accentPressed, onAccent;  ///< what is filled with the accent, and text upon it
    QColor link;                                          ///< the accent as text, and around what has the keyboard
    QColor toolTip;
    QColor running, done, trouble;  ///< words on a job
};

[[nodiscard]] const Colours& coloursOf(Look look);

/// Text of the first colour stands on a ground of the second.
struct TextPair {
    const char* where;
    QColor Colours::*text;
    QColor Colours::*ground;
};
[[nodiscard]] std::span<const TextPair> textPairs();

}  // namespace quillon
