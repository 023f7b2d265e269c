// SPDX-License-Identifier: MIT
#pragma once

// Which files of a job somebody asks for.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "evidence/evidence_row.h"
#include "testing/grade_choice.h"

namespace quillon {

/// An empty list of names asks for nothing in particular; all that is asked for must hold.
struct FileWish {
    std::vector<Grade> grades;
    std::vector<std::string> extensions;  ///< lower case; "" for files without one
    std::vector<Reason> reasons;
    std::string below;    ///< bytes of a folder, in the form of the rows' paths
    bool doubt = false;   ///< only files whose head or end speaks against them
    bool unread = false;  ///< only files of which bytes could not be read
};

[[nodiscard]] bool fits(const FileWish& wish, const EvidenceRow& file);

/// True for the folder itself, for all below it, and for everything where `above` is empty.
[[nodiscard]] bool isBelow(std::string_view folder, std::string_view above);

/// By the names that evidence and scripts have; none for an unknown one.
[[nodiscard]] std::optional<Reason> reasonNamed(std::string_view name);

}  // namespace quillon
