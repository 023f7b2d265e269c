// SPDX-License-Identifier: MIT
#pragma once

// Moves the bytes of one file into another, holes as holes. For the sources of this folder only.

#include <string_view>
#include <vector>

#include <sys/types.h>

#include "platform/copy_terms.h"

struct stat;

namespace quillon {

/// Two open files at their beginnings, and their paths for error texts.
struct CopyEnds {
    int source;
    std::string_view sourcePath;
    int target;
    std::string_view targetPath;
};

/// One copy in progress.
class CopyTransfer {
public:
    /// All must outlive this. `buffer` is for this transfer alone; it is made when it is needed, and good for the next
    /// one.
    /// `watch`: null for none; it sees the bytes where they are hashed.
    CopyTransfer(const CopyEnds& ends, const CopyManner& manner, std::vector<char>& buffer,
                 const CopyProgress& progress, ByteWatch* watch = nullptr)
        : ends_(ends), manner_(manner), buffer_(buffer), progress_(progress), watch_(manner.hash ? watch : nullptr) {}

    /// `info`: of the source as it was opened.
    [[nodiscard]] tl::expected<CopyFacts, CopyError> run(const struct stat& info);

private:
    using Done = tl::expected<void, CopyError>;
    using Moved = tl::expected<std::size_t, CopyError>;

    [[nodiscard]] Done copyData();
    [[nodiscard]] Done finish();
    [[nodiscard]] Done goTo(off_t place);
    [[nodiscard]] Done copyPiece(off_t from, off_t to);
    [[nodiscard]] Moved moveByRange(std::size_t wanted);
    [[nodiscard]] Moved moveByBuffer(std::size_t wanted);
    [[nodiscard]] Moved moveBlock(std::size_t wanted);
    [[nodiscard]] Moved leaveGap(off_t place, std::size_t length);
    [[nodiscard]] Moved put(std::size_t count);
    void hashZerosUpTo(off_t place);
    void hashGap(std::size_t length);
    [[nodiscard]] tl::unexpected<CopyError> failed(CopySide side) const;

    const CopyEnds ends_;
    const CopyManner& manner_;
    std::vector<char>& buffer_;
    const CopyProgress& progress_;
    ByteWatch* const watch_;
    std::optional<Sha256> hash_;
    off_t hashed_ = 0;
    off_t size_ = 0;  // of the source as it was opened
    off_t at_ = 0;
    off_t end_ = 0;
    bool useRange_ = true;
    unsigned goodBlocksToGo_ = 0;  // above 0: behind a gap, where a large read would only fail again
    ByteRanges gaps_;
};

}  // namespace quillon
