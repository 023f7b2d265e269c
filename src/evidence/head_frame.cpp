// SPDX-License-Identifier: MIT
#include "evidence/head_frame.h"

#include <cstring>
#include <optional>

#include <zstd.h>

namespace quillon {

namespace {

// Level 1 takes twice the time for a hundredth of the room, and level 3 four times for a few hundredths.
constexpr int kLevel = -1;

// Count, kind; for each head its row and its length, and its bytes.
constexpr std::size_t kLongestNumber = 10;
constexpr std::size_t kLargestPlain = 2 + static_cast<std::size_t>(kHeadsInBlock) * (kLongestNumber + 2 + kHeaderBytes);
static_assert(kHeadsInBlock <= 255, "the count is one byte");

constexpr char kWithHeads = 1;
constexpr char kHeadsLeftOut = 2;

// Seven bits a byte, the lowest first; the sign goes to the lowest bit.
void appendNumber(std::string& out, std::int64_t number) {
    auto left = (static_cast<std::uint64_t>(number) << 1U) ^ static_cast<std::uint64_t>(number >> 63);
    for (; left >= 0x80; left >>= 7U) out.push_back(static_cast<char>(left | 0x80U));
    out.push_back(static_cast<char>(left));
}

std::optional<std::int64_t> takeNumber(std::string_view& from) {
    std::uint64_t folded = 0;
    for (unsigned shift = 0; shift < 64 && !from.empty(); shift += 7) {
        const auto byte = static_cast<unsigned char>(from.front());
        from.remove_prefix(1);
        folded |= std::uint64_t{byte & 0x7FU} << shift;
        if (byte < 0x80)
            return static_cast<std::int64_t>(folded >> 1U) ^ -static_cast<std::int64_t>(folded & 1U);
    }
    return std::nullopt;
}

void lay(const HeadBlock& block, std::string& out) {
    out.clear();
    out.push_back(static_cast<char>(block.places.size()));
    out.push_back(block.leftOut ? kHeadsLeftOut : kWithHeads);
    std::int64_t last = 0;
    for (const auto& place : block.places) {
        appendNumber(out, place.file - last);
        last = place.file;
    }
    for (const auto& place : block.places) {
        out.push_back(static_cast<char>(place.head.length & 0xFFU));
        out.push_back(static_cast<char>(place.head.length >> 8U));
    }
    if (block.leftOut)
        return;
    for (const auto& place : block.places) out += place.head.given();
}

// The numbers may be those of a damaged frame: they are added without an overflow.
bool takeFiles(std::string_view& from, HeadBlock& block) {
    std::uint64_t last = 0;
    for (auto& place : block.places) {
        const auto step = takeNumber(from);
        if (!step)
            return false;
        last += static_cast<std::uint64_t>(*step);
        place.file = static_cast<std::int64_t>(last);
    }
    return true;
}

bool takeLengths(std::string_view& from, HeadBlock& block) {
    if (from.size() < 2 * block.places.size())
        return false;
    for (auto& place : block.places) {
        const unsigned length = static_cast<unsigned char>(from[0]) + 256U * static_cast<unsigned char>(from[1]);
        from.remove_prefix(2);
        if (length > kHeaderBytes)
            return false;
        place.head.length = static_cast<std::uint16_t>(length);
    }
    return true;
}

bool takeHeads(std::string_view& from, HeadBlock& block) {
    for (auto& place : block.places) {
        const std::size_t kept = block.leftOut ? 0 : place.head.length;
        if (from.size() < kept)
            return false;
        char* const bytes = place.head.bytes.data();
        std::memcpy(bytes, from.data(), kept);
        std::memset(bytes + kept, ' ', kHeaderBytes - kept);
        from.remove_prefix(kept);
    }
    return from.empty();
}

bool take(std::string_view from, HeadBlock& block) {
    if (from.size() < 2 || (from[1] != kWithHeads && from[1] != kHeadsLeftOut))
        return false;
    const auto count = static_cast<unsigned char>(from[0]);
    if (count == 0 || count > kHeadsInBlock)
        return false;
    block.leftOut = from[1] == kHeadsLeftOut;
    block.places.resize(count);
    from.remove_prefix(2);
    return takeFiles(from, block) && takeLengths(from, block) && takeHeads(from, block);
}

}  // namespace

void HeadFrames::FreePacker::operator()(ZSTD_CCtx_s* packer) const {
    ZSTD_freeCCtx(packer);
}

void HeadFrames::FreeUnpacker::operator()(ZSTD_DCtx_s* unpacker) const {
    ZSTD_freeDCtx(unpacker);
}

HeadFrames::HeadFrames() : packer_(ZSTD_createCCtx()), unpacker_(ZSTD_createDCtx()) {
}

Result<std::string_view> HeadFrames::pack(const HeadBlock& block) {
    lay(block, plain_);
    packed_.resize(ZSTD_compressBound(kLargestPlain));
    const std::size_t size =
        ZSTD_compressCCtx(packer_.get(), packed_.data(), packed_.size(), plain_.data(), plain_.size(), kLevel);
    if (ZSTD_isError(size) != 0)
        return failure(ErrorKind::PathAccess, ZSTD_getErrorName(size));
    return std::string_view(packed_).substr(0, size);
}

// The room is bounded beforehand: a frame that holds more does not fit, and nothing more is asked for.
bool HeadFrames::unpack(std::string_view frame, HeadBlock& block) {
    plain_.resize(kLargestPlain);
    const std::size_t size =
        ZSTD_decompressDCtx(unpacker_.get(), plain_.data(), plain_.size(), frame.data(), frame.size());
    return ZSTD_isError(size) == 0 && take(std::string_view(plain_).substr(0, size), block);
}

}  // namespace quillon
