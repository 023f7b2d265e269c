// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "platform/result.h"

namespace quillon {

/// Why the history of a database lacks a change; none when it was noted, or nothing changed.
using LostNote = std::optional<FileError>;

/// How a log or a terminal tells it.
[[nodiscard]] std::string lostNoteText(const FileError& why);

}  // namespace quillon
