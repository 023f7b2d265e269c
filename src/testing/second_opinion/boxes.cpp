// SPDX-License-Identifier: MIT
#include "testing/second_opinion/boxes.h"

namespace quillon {

std::optional<Box> boxAt(Bytes head, std::uint64_t at) {
    const auto length = head.be32(at);
    const auto kind = head.part(at + 4, 4);
    constexpr auto isPrintable = [](char c) { return c >= ' ' && c <= '~'; };
    if (!length || kind.size() < 4 || !std::ranges::all_of(kind, isPrintable))
        return std::nullopt;
    if (*length == 0)
        return Box{kind, at + 8, std::nullopt};
    if (*length == 1) {
        const auto longLength = head.be64(at + 8);
        return longLength && *longLength >= 16 ? std::optional(Box{kind, at + 16, plus(at, longLength)}) : std::nullopt;
    }
    return *length >= 8 ? std::optional(Box{kind, at + 8, plus(at, length)}) : std::nullopt;
}

bool isMediaIndex(std::string_view kind) {
    return kind == "moov" || kind == "moof" || kind == "meta";
}

}  // namespace quillon
