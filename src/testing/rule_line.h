// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/file.h"
#include "text/page_text.h"

namespace quillon {

/// The largest rule list or term file that is read. One that a person has written is a hundred times smaller; a larger
/// one counts as one that cannot be opened, as to search files by it would hold a job for hours.
inline constexpr std::size_t kRuleFileLimit = 4UL * 1024 * 1024;

/// All bytes of a rule list or term file.
[[nodiscard]] Result<std::string> readRuleFile(const NativePath& file);

/// Appends one line to a rule list of a settings folder, making the file when it is missing. A last line that lacks its
/// end, as an editor may leave it, gets one first, so that two lines never become one; of a line that was pasted as
/// several the first counts. An empty `folder` is a NotFound failure, and a list that cannot be read gets no line.
[[nodiscard]] Result<void> appendRuleLine(const NativePath& folder, std::string_view name, const PageText& line);

}  // namespace quillon
