// SPDX-License-Identifier: MIT
#pragma once

// The grades that the viewer can show, as its drop-down list has them.

#include <string>
#include <vector>

#include "platform/file.h"
#include "testing/report_messages.h"

namespace quillon {

/// The entry of the common header message. Kept: it is a fixed number, although the fallback list has one entry more
/// and the message one place further down there (test TheFallbackListShiftsTheCommonHeaderEntryByOne).
inline constexpr int kCommonHeaderCategory = 9;

inline constexpr const char16_t* kPleaseSelect = u"Please Select";

/// The lines of "Errors.dat", without blank ones and without the line of good files. A failure: it cannot be read.
[[nodiscard]] Result<std::vector<std::u16string>> readCategories(const NativePath& errorsFile,
                                                                 const ReportMessages& messages);

/// False for "Please Select", the entry 0, and for grades whose files cannot be taught: access error, encrypted, too
/// small, zero bytes. The texts compared with are the messages in memory.
[[nodiscard]] bool canEditCategory(int entry, const std::u16string& text, const ReportMessages& messages);

}  // namespace quillon
