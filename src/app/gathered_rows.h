// SPDX-License-Identifier: MIT
#pragma once

// Writes a list that nobody reads before it is whole: its rows come into the file many together. A list that is read
// while it grows, or that a killed program is to leave readable, is one for `ListWriter`.

#include <string>

#include "app/file_list.h"

namespace quillon {

class GatheredRows {
public:
    /// Writes into an empty file that is open already; for Utf16WithMark it begins with the mark.
    GatheredRows(File file, ListEncoding encoding);

    /// Appends a row and its line end. A failure is that of any row so far, and the file is of no use behind it.
    [[nodiscard]] Result<void> write(const ListRow& row);

    /// Brings the rows to the medium.
    [[nodiscard]] Result<void> sync();
    /// What was not brought there by `sync` is lost.
    [[nodiscard]] Result<void> close() { return file_.close(); }

private:
    [[nodiscard]] Result<void> writeGathered();

    File file_;
    ListEncoding encoding_;
    std::string gathered_;  // bytes
};

}  // namespace quillon
