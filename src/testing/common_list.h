// SPDX-License-Identifier: MIT
#pragma once

// The common headers: file types that are recognised whatever the extension. docs/formats/rule-lists.md.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "testing/header_term.h"

namespace quillon {

struct CommonRecord {
    CompiledTerm term;
    bool anywhere = false;                      ///< the record's position is 0
    std::optional<std::u16string> description;  ///< leading blanks cut; none in a record of fewer than four fields
};

class CommonList {
public:
    /// Takes the lines of a file in order. No lines leave the list as it was.
    void assign(const std::vector<std::string_view>& lines);

    /// Reads "CommonHeaders.dat". A file that cannot be read leaves the list as it was.
    [[nodiscard]] Result<void> load(const NativePath& file);

    /// Empty until a file with lines was loaded.
    [[nodiscard]] const std::vector<CommonRecord>& records() const { return records_; }

private:
    std::vector<CommonRecord> records_;
};

}  // namespace quillon
