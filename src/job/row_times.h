// SPDX-License-Identifier: MIT
#pragma once

// The exact times of the files of a raw list, whose rows hold a day: the walk writes them, the pass behind it reads
// them, in the order of the rows. They lie in a file without a name, as memory does not grow with the number of files.

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/file.h"

namespace quillon {

class RowTimes {
public:
    /// A file that can be written and read in this folder and goes by itself.
    [[nodiscard]] static Result<RowTimes> create(const NativePath& folder);

    /// Behind the time of the row before. `modified`: nanoseconds since 1970 UTC.
    [[nodiscard]] Result<void> add(std::string_view path, std::int64_t modified);

    /// The time of the next row; none when it is the row of another path than was added, which then stays the next.
    /// The first question ends the adding.
    [[nodiscard]] std::optional<std::int64_t> of(std::string_view path) { return find(inWork_, path); }
    /// The same for who is some rows ahead, and has a next row of its own.
    [[nodiscard]] std::optional<std::int64_t> aheadOf(std::string_view path) { return find(ahead_, path); }

private:
    struct Entry {
        std::int64_t path = 0;  // digest
        std::int64_t modified = 0;
    };

    struct Place {
        std::vector<Entry> entries;
        std::size_t next = 0;
        std::uint64_t offset = 0;  // behind the entries
    };

    explicit RowTimes(File file) : file_(std::move(file)) {}
    [[nodiscard]] Result<void> flush();
    [[nodiscard]] std::optional<std::int64_t> find(Place& place, std::string_view path);
    [[nodiscard]] bool fill(Place& place);

    File file_;
    std::vector<Entry> added_;
    bool reading_ = false;
    Place inWork_;
    Place ahead_;
};

}  // namespace quillon
