// SPDX-License-Identifier: MIT
#pragma once

// Sample heads: a folder with the first bytes of files whose type is known, and a table that tells the rest.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/source_files.h"

namespace quillon {

struct Sample {
    std::string path;            ///< below the folder, as in the table
    std::string extension;       ///< in lower case
    std::uint64_t trueSize = 0;  ///< of the file that the head was taken from
    std::string truth;           ///< of a mislabelled sample: what it really is
    HeaderBytes head{};          ///< the first 512 bytes, filled up with blanks
    HeaderBytes folded{};        ///< the same, lower-cased for matching
};

/// Samples below 512 bytes are graded by their size alone, so no term ever meets them.
[[nodiscard]] inline bool isTooSmall(const Sample& sample) {
    return sample.trueSize < kHeaderBytes;
}

/// Reads a table of samples (columns `path`, `ext`, `true_size`, where there is one `truth`; others are passed over)
/// and the heads that it names. A failure: the table or a head cannot be read, or a size is no number.
[[nodiscard]] Result<std::vector<Sample>> readSamples(const NativePath& folder, const std::string& table);

}  // namespace quillon
