// SPDX-License-Identifier: MIT
#pragma once

// The ten report messages. Their texts are the grades: rows of a list hold the text itself. docs/formats/rule-lists.md.

#include <optional>
#include <string>
#include <string_view>

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/surroundings.h"
#include "testing/grade.h"

namespace quillon {

/// Lines of "Errors.dat"; the first grades have one each.
inline constexpr std::size_t kMessageCount = 10;

/// Texts as they stand in lists; at first all are empty.
struct ReportMessages : ByGrade<std::u16string> {
    /// The texts for a file that cannot be read or is too short.
    [[nodiscard]] static ReportMessages fallback();
};

/// The grade that a row's result tells: of an equal message, or of one that the result begins with where a common
/// header does. None for any other text.
[[nodiscard]] std::optional<Grade> gradeOfResult(std::u16string_view result, const ReportMessages& messages);

/// Loads the messages from the local "Errors.dat". With sharing on the shared file first replaces the local one, or the
/// local one fills the share. Neither there: a box, and `messages` stay as they were. Any failure, also a file of fewer
/// than ten lines, gives all ten fallback texts without a word.
void loadReportMessages(const Installation& installation, Dialogs& dialogs, KeptFiles& kept, ReportMessages& messages);

}  // namespace quillon
