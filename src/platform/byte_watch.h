// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "text/byte_ranges.h"

namespace quillon {

/// Sees the bytes of files that pass by on their way into copies, one file after the other.
class ByteWatch {
public:
    virtual ~ByteWatch() = default;

    /// A new file; what was told of one that did not come to its end is forgotten.
    virtual void begin() = 0;
    /// Its next bytes.
    virtual void add(std::string_view bytes) = 0;
    /// Its next bytes are a hole.
    virtual void addHole(std::uint64_t bytes) = 0;
    /// Its next bytes cannot be read.
    virtual void addUnread(std::uint64_t bytes) = 0;
    /// The file has come to its end. Gives what of it its medium did not give.
    [[nodiscard]] virtual ByteRanges end() = 0;
};

/// Makes one for each thread that copies. Empty: nobody watches.
using ByteWatchMaker = std::function<std::unique_ptr<ByteWatch>()>;

}  // namespace quillon
