// SPDX-License-Identifier: MIT
#pragma once

// Why a database has records at position 0, which fit wherever their term stands in a header: also in the head of a
// file that was put together wrongly.

#include <string>
#include <vector>

#include "platform/file.h"

namespace quillon {

/// The name under which the common headers stand among the extensions.
inline constexpr const char* kCommonHeadersName = "CommonHeaders";

struct AnywhereReason {
    std::string reason;  ///< why the format leaves the place of its mark open
    std::vector<std::string> extensions;
};

/// Reads "anywhere.tsv": the columns `reason` and `extensions`, the latter separated by blanks.
[[nodiscard]] Result<std::vector<AnywhereReason>> readAnywhereReasons(const NativePath& path);

}  // namespace quillon
