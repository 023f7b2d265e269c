// SPDX-License-Identifier: MIT
// Sound other than that in containers of chunks.
#include "testing/second_opinion/check_sums.h"
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

// Seven bits of each byte count; a byte with the eighth bit is none of such a number.
Number sevenBits(Bytes head, std::uint64_t at) {
    const auto whole = head.be32(at);
    if (!whole || (*whole & 0x80808080U) != 0)
        return std::nullopt;
    return (*whole >> 24U) << 21U | (*whole >> 16U & 0x7FU) << 14U | (*whole >> 8U & 0x7FU) << 7U | (*whole & 0x7FU);
}

// How many bytes the stream has by the note in its first frame; nothing without one.
Number notedBytes(Bytes head, std::uint64_t frame) {
    const auto header = head.be32(frame);
    constexpr std::uint64_t layer3 = 0xFFE20000U;
    if (!header || (*header & 0xFFE60000U) != layer3)
        return std::nullopt;
    const bool version1 = (*header >> 19U & 3U) == 3;
    const bool mono = (*header >> 6U & 3U) == 3;
    const auto note = frame + 4 + (version1 ? (mono ? 17U : 32U) : (mono ? 9U : 17U));
    if (head.has(frame + 36, "VBRI"))
        return head.be32(frame + 46);
    if (!head.has(note, "Xing") && !head.has(note, "Info"))
        return std::nullopt;
    const auto flags = head.be32(note + 4);
    if (!flags || (*flags & 2U) == 0)
        return std::nullopt;
    return head.be32(note + 8 + ((*flags & 1U) != 0 ? 4U : 0U));
}

Opinion layer3At(Bytes head, std::uint64_t frame, std::uint64_t size) {
    // Encoders do not agree on whether the frame with the note counts.
    constexpr std::uint64_t slack = 16384;
    const auto noted = notedBytes(head, frame);
    return noted && *noted < 0xFFFFFFFFU ? needs(plus(frame, noted), size, "The note in the first frame", slack)
                                         : Opinion();
}

}  // namespace

// "ID3 tag version 2.4.0": 3 version, 5 flags (10: a footer of 10 bytes), 6 length in four bytes of seven bits. Sound
// follows.
Opinion id3Opinion(Bytes head, std::uint64_t size) {
    const auto length = sevenBits(head, 6);
    if (!within(head.u8(3), 2, 4) || !length)
        return {};
    const auto end = 10 + *length + ((*head.u8(5) & 0x10U) != 0 ? 10U : 0U);
    if (auto cut = needs(end, size, "The tag ahead of the sound"))
        return cut;
    return layer3At(head, end, size);
}

// ISO/IEC 11172-3, layer 3: 0 be32 frame header; behind the side information (9, 17 or 32 bytes) a note "Xing" or
// "Info": 4 be32 flags (1 frames, 2 bytes), be32 each; or "VBRI" at 36, there 10 be32 bytes.
Opinion layer3Opinion(Bytes head, std::uint64_t size) {
    return layer3At(head, 0, size);
}

// RFC 9639 (FLAC): from 4 on blocks: 0 kind (80: the last one), 1 be24 length.
Opinion flacOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t at = 4;
    while (const auto kind = head.u8(at)) {
        const auto length = head.be24(at + 1);
        if (kind == 0xFFU)
            return inconsistent("A block of the head is of a kind that cannot be.");
        if (!length)
            break;
        at += 4 + *length;
        if (*kind >= 0x80)
            break;
    }
    return needs(at, size, "The chain of blocks");
}

// RFC 3533 (Ogg): pages: 0 "OggS", 4 version 0, 22 check sum, 26 count of segments, 27 their lengths.
Opinion oggOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t at = 0;
    while (head.has(at, "OggS")) {
        const auto count = head.u8(at + 26);
        if (!count)
            break;
        const auto lengths = head.part(at + 27, *count);
        auto end = at + 27 + *count;
        for (const char length : lengths) end += static_cast<unsigned char>(length);
        if (at == 0 && head.holds(0, end) && head.le32(22) != oggSumOf(head.part(0, end)))
            return inconsistent("The check sum of the first page does not fit its bytes.");
        at = end;
    }
    return needs(at, size, "The chain of pages");
}

// "The .au Audio File Format" (Sun): 4 be32 place and 8 be32 length of the sound (FFFFFFFF: unknown).
Opinion sunSoundOpinion(Bytes head, std::uint64_t size) {
    const auto length = head.be32(8);
    if (!within(head.be32(4), 24, 0xFFFF) || !length || *length >= 0x7FFFFF00U)
        return {};
    return needs(plus(head.be32(4), length), size, "The header", 64);
}

// "Core Audio Format" (Apple): from 8 on chunks: kind, 4 be64 length (-1: unknown).
Opinion coreAudioOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t at = 8;
    while (const auto length = head.be64(at + 4)) {
        if (*length > kLargestSize)
            return {};
        at = *plus(at, 12, length);
    }
    return needs(at, size, "The chain of chunks");
}

// "Standard MIDI Files 1.0": 0 "MThd", 4 be32 6, 10 be16 count of tracks; each of them "MTrk", be32 length.
Opinion midiOpinion(Bytes head, std::uint64_t size) {
    const auto header = head.be32(4);
    const auto tracks = head.be16(10);
    if (!within(header, 6, 64) || !tracks)
        return {};
    if (*tracks == 0)
        return emptyContainer("The file has no tracks.");
    std::uint64_t at = 8 + *header;
    std::uint64_t seen = 0;
    while (seen < *tracks && head.has(at, "MTrk") && head.holds(at, 8)) {
        at = *plus(at, head.be32(at + 4), 8);
        ++seen;
    }
    return needs(at, size, "The chain of tracks");
}

// "Monkey's Audio" from 3.98 on: 4 le16 version, 8, 12, 16, 20 le32 lengths of descriptor, header, seek table and wave
// header, 24 le32 and 28 le32 low and high half of the frames' length, 32 le32 length of what follows them.
Opinion monkeyAudioOpinion(Bytes head, std::uint64_t size) {
    if (!within(head.le16(4), 3980, 9999))
        return {};
    return needs(plus(head.le32(8), head.le32(12), head.le32(16), head.le32(20), head.le64(24), head.le32(32)), size,
                 "The descriptor");
}

// "WavPack 4 & 5 Binary File Format": 0 "wvpk", 4 le32 length of the block behind its first 8 bytes.
Opinion wavPackOpinion(Bytes head, std::uint64_t size) {
    const auto length = head.le32(4);
    return within(length, 24, 0xFFFFFF) ? needs(plus(length, 8), size, "The first block") : Opinion();
}

// "Creative Voice File Format": 20 le16 place of the first block: kind (0: the end), le24 length.
Opinion voiceOpinion(Bytes head, std::uint64_t size) {
    const auto at = head.le16(20);
    if (!within(at, 26, 64) || head.u8(*at) == 0U)
        return {};
    return needs(plus(at, head.number(*at + 1, 3, Order::Little), 4), size, "The first block");
}

}  // namespace quillon
