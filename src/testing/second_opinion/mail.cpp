// SPDX-License-Identifier: MIT
// Stores of mail.
#include "testing/second_opinion/formats.h"

namespace quillon {

// "Outlook Personal Folders File Format" (MS-PST): 0 "!BDN", 8 "SM" (of a server "SO", of addresses "AB"), 10 le16
// version: 14 or 15 with 168 le32, from 23 on with 184 le64 the length of the file.
Opinion mailStoreOpinion(Bytes head, std::uint64_t size) {
    const auto version = head.le16(10);
    const bool known = head.has(8, "SM") || head.has(8, "SO") || head.has(8, "AB");
    if (!known || !version)
        return {};
    if (within(version, 14, 15))
        return needs(head.le32(168), size, "The header");
    return *version >= 23 ? needs(head.le64(184), size, "The header") : Opinion();
}

// "Outlook Express dbx file format" (A. Schloh): 4 what it holds, 124 le32 used space of the file.
Opinion expressMailOpinion(Bytes head, std::uint64_t size) {
    return needs(head.le32(124), size, "The header");
}

}  // namespace quillon
