// SPDX-License-Identifier: MIT
#pragma once

// The second opinion on the end of a file of a source.

#include <optional>
#include <string>

#include "platform/source_files.h"
#include "testing/second_opinion/file_end.h"

namespace quillon {

/// What is asked of a file. `head`: its first bytes; none where nobody kept them: they are read again.
struct EndQuestion {
    std::string path;  ///< native
    std::uint64_t size = 0;
    std::optional<std::string> head;
};

/// The end of a file by `fileEndOpinion`. Nothing is opened where the head says that its format has no known end. A
/// failure: the file cannot be opened, has become shorter, or its end cannot be read.
[[nodiscard]] Result<Opinion> sourceEndOpinion(SourceFiles& files, const EndQuestion& question);

}  // namespace quillon
