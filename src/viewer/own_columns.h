// SPDX-License-Identifier: MIT
#pragma once

// The viewer's columns of our own, which stand behind the told ones in this order and are there when the list has
// evidence. One more is one row of this table.

#include <array>
#include <string>

#include "evidence/evidence_row.h"
#include "text/numbers.h"

namespace quillon {

struct OwnColumn {
    const char* title;
    int width;  ///< pixels
    std::string (*text)(const EvidenceRow& file);
};

/// Why the file is not good, in words, and what there is to say further; empty for a file without a reason.
[[nodiscard]] inline std::string reasonText(const EvidenceRow& file) {
    if (!file.reason)
        return {};
    const std::string text = reasonRow(*file.reason).text;
    return file.detail.empty() ? text : text + ": " + file.detail;
}

/// What speaks against a good file: in words, where there are any.
[[nodiscard]] inline std::string doubtText(const EvidenceRow& file) {
    return file.doubtDetail.empty() ? file.doubt : file.doubtDetail;
}

/// How many of its bytes lie in sectors that were not read: "8,192", "none", and empty where nobody has looked.
[[nodiscard]] inline std::string badBytesText(const EvidenceRow& file) {
    if (!file.badBytes)
        return {};
    return *file.badBytes == 0 ? "none" : grouped(*file.badBytes);
}

inline constexpr std::array kOwnColumns = {OwnColumn{"Reason", 280, reasonText}, OwnColumn{"Doubt", 280, doubtText},
                                           OwnColumn{"Unread Bytes", 100, badBytesText}};

}  // namespace quillon
