// SPDX-License-Identifier: MIT
#pragma once

// The first bytes of the files that the viewer hands over: from the source, and where that is away as the evidence has
// kept them.

#include "platform/source_files.h"
#include "text/list_text.h"
#include "viewer/editor_handover.h"

namespace quillon {

class HandedHeads final : public HeadReader {
public:
    /// `kept` must outlive this; empty where the source is there.
    explicit HandedHeads(const KeptHeads& kept) : kept_(kept) {}

    [[nodiscard]] Result<std::size_t> readHead(std::string_view nativePath, HeaderBytes& head) override {
        auto read = files_.readHead(nativePath, head);
        const auto kept = read || !kept_ ? std::nullopt : kept_(toListText(nativePath));
        if (!kept)
            return read;
        head = kept->bytes;
        return std::size_t{kept->length};
    }

private:
    const KeptHeads& kept_;
    SourceFiles files_;
};

}  // namespace quillon
