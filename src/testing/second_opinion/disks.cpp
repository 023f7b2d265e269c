// SPDX-License-Identifier: MIT
// Images of disks and of file systems.
#include "testing/second_opinion/formats.h"

namespace quillon {

// "Virtual Hard Disk Image Format" (Microsoft): a growing disk begins with a copy of its last 512 bytes: 0 "conectix",
// 16 be64 place of the second header (1024 bytes), 64 be32 sum of all bytes but its own, inverted.
Opinion vhdOpinion(Bytes head, std::uint64_t size) {
    if (!head.holds(0, kHeaderBytes))
        return needs(kHeaderBytes, size, "A disk");
    std::uint32_t sum = 0;
    for (const char c : head.part(0, 64)) sum += static_cast<unsigned char>(c);
    for (const char c : head.part(68, kHeaderBytes)) sum += static_cast<unsigned char>(c);
    if (head.be32(64) != static_cast<std::uint32_t>(~sum))
        return inconsistent("The check sum of the header does not fit its bytes.");
    constexpr std::uint64_t secondHeader = 1024;
    const auto place = head.be64(16);
    return place && *place < kLargestSize ? needs(plus(place, secondHeader, kHeaderBytes), size, "The header")
                                          : Opinion();
}

// "Virtual Hard Disk v2" (MS-VHDX): 0 "vhdxfile"; headers and two region tables fill the first 320 KB.
Opinion vhdxOpinion(Bytes, std::uint64_t size) {
    return needs(320 * 1024, size, "A disk");
}

// "Virtual Disk Format 5.0" (VMware): 0 "KDMV", 4 le32 version, 64 le64 sectors ahead of the first grain.
Opinion vmdkOpinion(Bytes head, std::uint64_t size) {
    return within(head.le32(4), 1, 3) ? needs(times(head.le64(64), 512), size, "The header") : Opinion();
}

// "qcow2" (QEMU documentation): 4 be32 version 2 or 3, 36 be32 count and 40 be64 place of the first table's entries of
// 8 bytes, 48 be64 place of the table of reference counts.
Opinion qcow2Opinion(Bytes head, std::uint64_t size) {
    if (!within(head.be32(4), 2, 3))
        return {};
    const auto first = plus(head.be64(40), times(head.be32(36), 8));
    const auto counts = plus(head.be64(48), 8);
    return first && counts ? needs(std::max(*first, *counts), size, "The header") : Opinion();
}

// "VDI" (VirtualBox): 64 le32 BEDA107F, 68 le32 version 1.1, 340 le32 place of the table of blocks, 344 le32 place of
// the blocks, 376 le32 length of a block, 380 le32 extra bytes of each, 388 le32 count of those that are there.
Opinion vdiOpinion(Bytes head, std::uint64_t size) {
    if (head.le32(68) != 0x10001U)
        return {};
    return needs(plus(head.le32(344), times(plus(head.le32(376), head.le32(380)), head.le32(388))), size, "The header");
}

// "Windows Imaging File Format" (Microsoft): 48 and 72 resources, the table of files and the description: 0 le64 length
// in its low seven bytes, 8 le64 place.
Opinion windowsImageOpinion(Bytes head, std::uint64_t size) {
    std::uint64_t end = 0;
    for (const std::uint64_t at : {48U, 72U}) {
        const auto length = head.number(at, 7, Order::Little);
        end = std::max(end, plus(length, head.le64(at + 8)).value_or(0));
    }
    return needs(end, size, "The header");
}

// "Squashfs 4.0": 0 "hsqs", 28 le16 version 4, 40 le64 bytes used.
Opinion squashfsOpinion(Bytes head, std::uint64_t size) {
    return head.le16(28) == 4U ? needs(head.le64(40), size, "The header") : Opinion();
}

}  // namespace quillon
