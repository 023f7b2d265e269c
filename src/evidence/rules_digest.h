// SPDX-License-Identifier: MIT
#pragma once

// A number for the rules that a job went by: equal rules give equal numbers.

#include <cstdint>

#include "app/installation.h"
#include "testing/report_messages.h"

namespace quillon {

/// Over names and bytes of the local term files, the bytes of common headers and bad sector markers, and the messages.
/// What cannot be read counts as empty.
[[nodiscard]] std::int64_t rulesDigest(const Paths& paths, const ReportMessages& messages);

}  // namespace quillon
