// SPDX-License-Identifier: MIT
// Archives with a table of contents: zip, 7-Zip, cabinet.
#include "testing/second_opinion/check_sums.h"
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

constexpr std::uint64_t kLocalHeader = 30;
constexpr std::uint64_t kDirectoryEntry = 46;
constexpr std::uint64_t kEndRecord = 22;
constexpr std::uint64_t kZip64Mark = 0xFFFFFFFFU;

// The packed length out of the extra field 1 of a local header, behind the 8 bytes of the plain length.
Number zip64Packed(Bytes head, std::uint64_t at, std::uint64_t end) {
    while (at + 4 <= end) {
        const auto length = head.le16(at + 2);
        if (head.le16(at) == 1U)
            return within(length, 16, 0xFFFF) ? head.le64(at + 12) : std::nullopt;
        if (!length)
            return std::nullopt;
        at += 4 + *length;
    }
    return std::nullopt;
}

// Where the member ends whose header stands at `at`; its packed bytes count as none where their number is not told.
Number memberEnd(Bytes head, std::uint64_t at) {
    constexpr std::uint64_t lengthFollows = 8;
    const auto flags = head.le16(at + 6);
    auto packed = head.le32(at + 18);
    const auto names = plus(head.le16(at + 26), head.le16(at + 28));
    const auto data = plus(at, kLocalHeader, names);
    if (!flags || !packed || !data)
        return std::nullopt;
    if (packed == kZip64Mark)
        packed = zip64Packed(head, at + kLocalHeader + *head.le16(at + 26), *data).value_or(0);
    return plus(data, packed, (*flags & lengthFollows) != 0 ? 12 : 0);
}

bool lengthIsTold(Bytes head, std::uint64_t at) {
    constexpr std::uint64_t lengthFollows = 8;
    return (head.le16(at + 6).value_or(lengthFollows) & lengthFollows) == 0;
}

}  // namespace

// "APPNOTE.TXT" (PKWARE): local headers 0 "PK\3\4", 6 le16 flags (8: the lengths follow the
// data), 18 le32 packed length (FFFFFFFF: in extra field 1), 26 and 28 le16 lengths of name and extra field. Behind all
// members a directory with an entry of 46 bytes and the name for each, and an end record of 22 bytes.
Opinion zipOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t needed = 0;
    std::uint64_t directory = kEndRecord;
    std::uint64_t at = 0;
    while (head.has(at, "PK\3\4")) {
        const auto end = memberEnd(head, at);
        if (!end)
            break;
        directory += kDirectoryEntry + *head.le16(at + 26);
        needed = *end;
        if (!lengthIsTold(head, at))
            break;
        at = *end;
    }
    if (needed == 0)
        return needs(kLocalHeader + kDirectoryEntry + kEndRecord, size, "An archive");
    return needs(plus(needed, directory), size,
                 "The first member and its directory (or a later part of a split archive)");
}

// The same: an end record alone, 0 "PK\5\6", 4 le16 number of this disk, 10 le16 count of members.
Opinion emptyZipOpinion(Bytes head, std::uint64_t size) {
    if (head.le16(4) == 0U && head.le16(10) == 0U && size <= kEndRecord + 0xFFFF)
        return emptyContainer("The archive has no members.");
    return {};
}

// "7z Format Description": 8 le32 CRC-32 of the 20 bytes from 12 on, 12 le64 place of the end header behind these 32
// bytes, 20 le64 its length. All zeros: the archive was never completed.
Opinion sevenZipOpinion(Bytes head, std::uint64_t size) {
    constexpr std::uint64_t startHeader = 32;
    if (!head.holds(0, startHeader))
        return needs(startHeader, size, "An archive");
    if (head.le32(8) == 0U && head.le64(12) == 0U && head.le64(20) == 0U)
        return noIndex("The archive was never completed: it has no end header.");
    if (head.le32(8) != crc32Of(head.part(12, 20)))
        return inconsistent("The check sum of the start header does not fit its bytes.");
    if (head.le64(20) == 0U)
        return emptyContainer("The archive has no members.");
    const auto end = plus(startHeader, head.le64(12), head.le64(20));
    if (auto cut = needs(end, size, "The start header (unless this is one part of a split archive)"))
        return cut;
    return endsAt(end, size, "The archive");
}

// "Microsoft Cabinet Format" (MS-CAB): 0 "MSCF", 4 le32 0, 8 le32 length of the cabinet, 16 le32 place of the first
// file's entry, 24 and 25 version 3 and 1, 28 le16 count of files. A signature may follow.
Opinion cabinetOpinion(Bytes head, std::uint64_t size) {
    if (head.le32(4).value_or(0) != 0 || !within(head.le32(8), 36, kLargestSize))
        return {};
    if (head.le16(28) == 0U)
        return emptyContainer("The cabinet has no files.");
    return needs(head.le32(8), size, "The cabinet's header");
}

}  // namespace quillon
