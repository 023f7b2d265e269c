// SPDX-License-Identifier: MIT
#pragma once

// A database folder read as a whole: the folder that holds `Database` and `Settings`, as an installation and the
// starter database have them.

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "dbcheck/anywhere.h"
#include "dbcheck/families.h"
#include "platform/file.h"
#include "testing/common_list.h"
#include "testing/header_term.h"

namespace quillon {

struct HeaderDatabase {
    /// The compiled records of each extension, in file order.
    std::map<std::string, std::vector<CompiledTerm>> terms;
    CommonList commonList;                     ///< empty without "CommonHeaders.dat"
    Families families;                         ///< empty without "families.tsv"
    std::vector<AnywhereReason> anywhere;      ///< empty without "anywhere.tsv"
    std::map<std::string, std::string> kinds;  ///< what an extension is, from "extensions.tsv"; may be empty
};

/// Reads the folder. A failure: no `Database` folder, or a file that cannot be read or is no table.
[[nodiscard]] Result<HeaderDatabase> readHeaderDatabase(const NativePath& folder);

/// The first record that fits a header behind `foldHeader`, counted from 0; none when no record does. A defective
/// record fits, as it does in the header test.
[[nodiscard]] std::optional<std::size_t> firstFit(const std::vector<CompiledTerm>& terms, const HeaderBytes& folded);

/// True when a common header gives the header a name.
[[nodiscard]] bool namedByCommonHeader(const CommonList& list, const HeaderBytes& folded);

}  // namespace quillon
