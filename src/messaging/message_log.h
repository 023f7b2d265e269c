// SPDX-License-Identifier: MIT
#pragma once

// The messaging log: one record for each alert, kept for the operator. Nothing reads it back. The format is described
// in docs/formats/message-log.md.

#include <string>

#include "app/installation.h"
#include "app/surroundings.h"
#include "platform/result.h"

namespace quillon {

/// Stands for a line end inside a record: character 253.
inline constexpr const char* kRecordLineBreak = "\u00FD";

/// `text` (UTF-8) with character 253 for every CR LF, and for a CR or LF that stands alone, so that a record stays on
/// one line.
[[nodiscard]] std::string withoutLineBreaks(const std::string& text);

/// Appends one record, date and time, ";" and the text, to "Messaging logs/logs.dat" in the local settings folder and,
/// with sharing on, in the shared one. `text` comes back as it was written. The first failure ends the work: the
/// remaining file is skipped, and callers pass the failure over, since messaging never fails because of its log. The
/// loop turns while a share hangs.
///
/// Kept: whether the local folder has to be made is asked of "Messageing Logs" in the application folder, which never
/// exists, so that the creation is tried at every call (test TheLocalFolderIsMadeAtEveryCall).
[[nodiscard]] Result<void> writeMessageLog(std::string& text, const Installation& installation,
                                           const Surroundings& surroundings);

}  // namespace quillon
