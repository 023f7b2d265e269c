// SPDX-License-Identifier: MIT
#pragma once

// Which file lists belong to a job, and what their archive is called. A job ID such as "1234-Partition 1" names one
// list of job 1234; the separator parts the job from the rest.

#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"

namespace quillon {

/// The mask for the lists of a job. All texts are UTF-8. "1234-Partition 1" with "-" gives "1234-*.csv", with the
/// separator ignored "1234*.csv"; without a separator in it the job ID gives "1234.csv" or "1234*.csv".
///
/// Kept: an empty separator is found at the first character, so that the mask is that character and "*.csv", or
/// "*.csv" alone (test AnEmptySeparatorIsFoundAtTheFirstCharacter).
[[nodiscard]] std::string listMask(std::string_view jobId, std::string_view separator, bool ignoreSeparator);

/// The lists in a folder that the mask names, sorted; when there is none, those that begin with the job ID.
[[nodiscard]] std::vector<NativePath> findLists(const NativePath& folder, std::string_view jobId,
                                                std::string_view separator, bool ignoreSeparator);

/// The job ID before its last separator, so that the lists of all partitions land in one archive; without a separator
/// the whole job ID. "1234-A-B" -> "1234-A". Kept: an empty separator cuts the last character (test
/// AnEmptySeparatorCutsTheLastCharacter).
[[nodiscard]] std::string archiveBaseName(std::string_view jobId, std::string_view separator);

}  // namespace quillon
