// SPDX-License-Identifier: MIT
#pragma once

// A number for the rules that a job went by: equal rules give equal numbers.

#include <cstdint>

#include "platform/file.h"
#include "testing/report_messages.h"

namespace quillon {

/// Over names and bytes of the term files, the bytes of the common headers, and the messages. What cannot be read
/// counts as empty.
[[nodiscard]] std::int64_t rulesDigest(const NativePath& database, const NativePath& commonHeaders,
                                       const ReportMessages& messages);

}  // namespace quillon
