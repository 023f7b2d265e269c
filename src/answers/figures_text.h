// SPDX-License-Identifier: MIT
#pragma once

// Figures for people on a terminal and for scripts. docs/formats/list-json.md tells the names of the latter.

#include <string>
#include <utility>
#include <vector>

#include "answers/figures.h"

namespace quillon {

enum class TerminalColours { None, Some };

/// Names and figures, in the order in which they are shown.
using FigureRows = std::vector<std::pair<std::string, Figures>>;

/// The job in some lines: files, bytes, quality with its base, a bar of the grades, a line for each grade and reason
/// that has files. `knowsAll` false: reasons are told to be unknown.
[[nodiscard]] std::string summaryText(const Figures& figures, bool knowsAll, TerminalColours colours);

/// A table with a head, aligned, each row with its grade bar. `what`: the title of the first column. Names are shown
/// readable.
[[nodiscard]] std::string tableText(const std::string& what, const FigureRows& rows, TerminalColours colours);

/// One object: files, bytes, quality (per cent with two decimals, null when nothing was judged), doubtful, not-tested,
/// and a number for each grade and reason. `unfinished`: a run did not come to its end, and files are missing here.
[[nodiscard]] std::string summaryJson(const Figures& figures, bool knowsAll, bool unfinished = false);

/// A list of objects, each with `what` (text as in the evidence's paths) and the numbers above.
[[nodiscard]] std::string tableJson(const std::string& what, const FigureRows& rows);

}  // namespace quillon
