// SPDX-License-Identifier: MIT
// What Windows keeps of itself: registry, event logs, links, help, dumps, notebooks.
#include "testing/second_opinion/check_sums.h"
#include "testing/second_opinion/formats.h"

namespace quillon {

namespace {

using namespace std::string_view_literals;

// All words ahead of the sum, combined by exclusive or; two values are avoided.
std::uint64_t hiveSum(Bytes head) {
    std::uint64_t sum = 0;
    for (std::uint64_t at = 0; at < 508; at += 4) sum ^= *head.le32(at);
    if (sum == 0)
        return 1;
    return sum == 0xFFFFFFFFU ? 0xFFFFFFFEU : sum;
}

}  // namespace

// "Windows registry file format" (M. Suhanov): 28 le32 kind (0: hive, others: logs of one), 40 le32 length of the bins
// behind the first 4096 bytes, 508 le32 check sum.
Opinion hiveOpinion(Bytes head, std::uint64_t size) {
    if (!head.holds(0, kHeaderBytes))
        return needs(kHeaderBytes, size, "A hive");
    if (*head.le32(508) != hiveSum(head))
        return inconsistent("The check sum of the header does not fit its bytes.");
    return head.le32(28) == 0U ? needs(plus(head.le32(40), 4096), size, "The header") : Opinion();
}

// "Windows XML Event Log" (J. Metz): 0 "ElfFile\0", 42 le16 count of chunks of 64 KB behind 4096 bytes, 120 le32 flags
// (1: was not closed), 124 le32 CRC-32 of the first 120 bytes.
Opinion eventLogOpinion(Bytes head, std::uint64_t size) {
    if (!head.holds(0, 128))
        return needs(4096, size, "An event log");
    if (head.le32(124) != crc32Of(head.part(0, 120)))
        return inconsistent("The check sum of the header does not fit its bytes.");
    return needs(plus(times(head.le16(42), 65536), 4096), size, "The header");
}

// "Event Log File Format" (Microsoft): 0 le32 48, 4 "LfLe", 16 and 20 le32 places of the oldest record and of the end.
Opinion oldEventLogOpinion(Bytes head, std::uint64_t size) {
    if (head.le32(0) != 48U)
        return {};
    const auto oldest = head.le32(16);
    const auto end = head.le32(20);
    return oldest && end ? needs(std::max(*oldest, *end), size, "The header") : Opinion();
}

// "Shell Link Binary File Format" (MS-SHLLINK): 20 le32 flags (1: list of identifiers, 2: location), from 76 on le16
// length of the list, le32 length of the location with itself.
Opinion linkOpinion(Bytes head, std::uint64_t size) {
    const auto flags = head.le32(20);
    if (!flags)
        return needs(76, size, "A link");
    std::uint64_t at = 76;
    if ((*flags & 1U) != 0)
        at += 2 + head.le16(at).value_or(0);
    if ((*flags & 2U) != 0)
        at += head.le32(at).value_or(4);
    return needs(at, size, "The link's parts");
}

// "WinHelp" (M. Winterhoff): 0 le32 35F3F, 12 le32 length of the file.
Opinion oldHelpOpinion(Bytes head, std::uint64_t size) {
    return needs(head.le32(12), size, "The header");
}

// "CHM" (M. Russotto): 0 "ITSF", 4 le32 version, 8 le32 length of the header; 56 le64 place of a section of 24 bytes: 8
// le64 length of the file.
Opinion helpOpinion(Bytes head, std::uint64_t size) {
    const auto section = head.le64(56);
    if (!within(head.le32(4), 2, 4) || !within(section, 64, kHeaderBytes))
        return {};
    return needs(head.le64(*section + 8), size, "The header", 64);
}

// "MINIDUMP_HEADER" (Microsoft): 8 le32 count and 12 le32 place of streams of 12 bytes: 4 le32 length, 8 le32 place.
Opinion dumpOpinion(Bytes head, std::uint64_t size) {
    const auto count = head.le32(8);
    const auto place = head.le32(12);
    if (!count || !place)
        return {};
    auto end = *plus(place, times(count, 12));
    for (std::uint64_t i = 0; i < *count; ++i) {
        const auto at = *plus(place, i * 12);
        const auto one = plus(head.le32(*plus(at, 4)), head.le32(*plus(at, 8)));
        if (!one)
            break;
        end = std::max(end, *one);
    }
    return needs(end, size, "The table of streams");
}

// "OneNote Revision Store File Format" (MS-ONESTORE): 48 identifier of the format, 196 le64 length of the file.
// Notebooks that come from a server are packed in another way.
Opinion notebookOpinion(Bytes head, std::uint64_t size) {
    constexpr auto store = "\x3F\xDD\x9A\x10\x1B\x91\xF5\x49"sv;
    return head.has(48, store) ? needs(head.le64(196), size, "The header") : Opinion();
}

}  // namespace quillon
