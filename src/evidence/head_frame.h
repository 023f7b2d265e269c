// SPDX-License-Identifier: MIT
#pragma once

// The heads of up to 128 files in one compressed frame. docs/formats/evidence.md.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "evidence/evidence_row.h"
#include "platform/result.h"

struct ZSTD_CCtx_s;
struct ZSTD_DCtx_s;

namespace quillon {

/// One block of heads as it is in memory.
struct HeadBlock {
    struct Place {
        std::int64_t file = 0;  ///< id of its row
        FileHead head;

        friend bool operator==(const Place&, const Place&) = default;
    };
    bool leftOut = false;  ///< the bytes of the heads are not kept, only which files had one
    std::vector<Place> places;

    friend bool operator==(const HeadBlock&, const HeadBlock&) = default;
};

/// Packs and unpacks frames; keeps the library's working memory.
class HeadFrames {
public:
    HeadFrames();

    /// At most `kHeadsInBlock` places. The frame is good until the next call.
    [[nodiscard]] Result<std::string_view> pack(const HeadBlock& block);

    /// Never takes more memory than a whole block needs, whatever the frame says. False: it is no frame of ours.
    [[nodiscard]] bool unpack(std::string_view frame, HeadBlock& block);

private:
    struct FreePacker {
        void operator()(ZSTD_CCtx_s* packer) const;
    };
    struct FreeUnpacker {
        void operator()(ZSTD_DCtx_s* unpacker) const;
    };
    std::unique_ptr<ZSTD_CCtx_s, FreePacker> packer_;
    std::unique_ptr<ZSTD_DCtx_s, FreeUnpacker> unpacker_;
    std::string plain_;
    std::string packed_;
};

}  // namespace quillon
