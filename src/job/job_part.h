// SPDX-License-Identifier: MIT
#pragma once

// A job in several parts, for several computers that see one source. A folder's files belong to one part, by the
// folder's path below the source alone, so that no computer has to know of another.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file.h"

namespace quillon {

struct JobPart {
    std::int64_t number = 1;  ///< from 1 to `of`
    std::int64_t of = 1;      ///< at most `kMostParts`
    std::string jobId;        ///< of the whole job

    /// Whether the files of a folder belong to this part. `folder`: bytes below the source, without "/" around it;
    /// empty for the source itself. The same on every computer and in every version.
    [[nodiscard]] bool has(std::string_view folder) const;

    friend bool operator==(const JobPart&, const JobPart&) = default;
};

inline constexpr std::int64_t kMostParts = 100'000;

/// "3/16" -> part 3 of 16; none for what is no such text.
[[nodiscard]] std::optional<JobPart> partOf(const std::string& jobId, std::string_view text);
/// "3/16"
[[nodiscard]] std::string partText(const JobPart& part);
/// The job ID of a part: "1234-Part 3".
[[nodiscard]] std::string idOfPart(const JobPart& part, std::string_view separator);

/// The folders of a source whose files are a job's own: all of them, or those of its part.
class OwnFolders {
public:
    OwnFolders() = default;
    OwnFolders(const NativePath& source, const std::optional<JobPart>& part);

    /// `path`: absolute, ends in "/".
    [[nodiscard]] bool hold(std::string_view path) const;

private:
    std::optional<JobPart> part_;
    std::size_t prefix_ = 0;  // bytes of the source, with "/"
};

}  // namespace quillon
