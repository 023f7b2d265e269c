// SPDX-License-Identifier: MIT
#pragma once

// What tells the lines of one list from those of another, whatever its encoding.

#include <span>

#include "app/file_list.h"
#include "evidence/digest.h"

namespace quillon {

/// Grows line by line, from the first one on.
class ListDigest {
public:
    void add(const ListRow& row) {
        const auto bytes = std::as_bytes(std::span(row.line()));
        digest_.add(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    }
    [[nodiscard]] std::int64_t value() const { return digest_.value(); }

private:
    Digest digest_;
};

}  // namespace quillon
