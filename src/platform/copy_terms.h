// SPDX-License-Identifier: MIT
#pragma once

// What is said of copies: how they are to be made, what became of one, and which side failed.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/byte_watch.h"
#include "platform/folders.h"
#include "platform/result.h"
#include "platform/sha256.h"
#include "text/byte_ranges.h"

namespace quillon {

/// Which side of a copy failed.
enum class CopySide { Source, Target, Cancelled };

struct CopyError {
    CopySide side = CopySide::Source;
    FileError error;
    bool opened = false;   ///< both files could be opened; what failed came later
    bool differs = false;  ///< the copy was read back, and is another one

    [[nodiscard]] static CopyError cancelled() {
        return {CopySide::Cancelled, {ErrorKind::PathAccess, "cancelled"}, false, false};
    }

    /// "source: <text>", "target: <text>" or "cancelled".
    [[nodiscard]] std::string text() const;
};

/// How copies are made.
struct CopyManner {
    bool hash = false;          ///< the bytes are hashed on their way
    bool salvage = false;       ///< what the source does not give is left as a gap of zeros
    bool attributes = false;    ///< extended attributes of the user go along, as far as the target can have them
    ByteWatchMaker watch = {};  ///< sees the bytes of those that are hashed
};

/// What is done for copies beside the copying.
struct CopyCare {
    bool sync = true;           ///< a copy gets its name when its bytes are on the medium
    bool verify = false;        ///< and when they were read back from there; takes `sync` and the hash
    bool hash = false;          ///< the bytes are hashed on their way
    bool salvage = false;       ///< see CopyManner
    bool whole = false;         ///< extended attributes and the times of folders go along
    ByteWatchMaker watch = {};  ///< see CopyManner

    [[nodiscard]] CopyManner manner() const { return {hash || verify || salvage, salvage, whole, watch}; }
};

/// What is known of a copy.
struct CopyFacts {
    std::uint64_t size = 0;                       ///< bytes
    std::optional<Sha256Digest> hash;             ///< of the bytes as they were read, when they were hashed
    ByteRanges gaps;                              ///< what the source did not give; empty for a whole copy
    std::size_t lostAttributes = 0;               ///< extended attributes that the target does not have
    std::optional<FileTime> sourceModified = {};  ///< as it was opened
    std::optional<ByteRanges> unread = {};  ///< what the watch saw that the medium did not give; none: nobody watched
};

/// Called at the start of a copy (`done` 0) and behind every finished chunk, in bytes. False cancels the copy.
using CopyProgress = std::function<bool(std::uint64_t done, std::uint64_t total)>;

}  // namespace quillon
