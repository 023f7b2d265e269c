// SPDX-License-Identifier: MIT
#pragma once

// Families: extensions whose healthy files truly share a header, so that a term of one rightly accepts files of
// another.

#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/file.h"

namespace quillon {

struct Family {
    std::string name;
    std::string reason;
    std::vector<std::string> extensions;   ///< their terms accept each other's files, and
    std::vector<std::string> alsoAccepts;  ///< those of these
};

class Families {
public:
    /// Reads "families.tsv": the columns `family`, `reason`, `extensions` and `also accepts`, the last two lists
    /// separated by blanks.
    [[nodiscard]] static Result<Families> read(const NativePath& path);

    [[nodiscard]] const std::vector<Family>& all() const { return families_; }

    /// True when the terms of `extension` may accept a healthy file of the extension `other`.
    [[nodiscard]] bool mayAccept(const std::string& extension, const std::string& other) const;

private:
    std::vector<Family> families_;
    std::set<std::pair<std::string, std::string>> pairs_;
};

}  // namespace quillon
