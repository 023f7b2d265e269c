// SPDX-License-Identifier: MIT
#pragma once

// What stands beside a verdict and never changes it: why a file is not good, and what speaks against one that looks
// good. Both come from the same head as the grade, take longer than it, and may be found later, on another thread.

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/source_files.h"
#include "testing/common_list.h"
#include "testing/grade.h"
#include "testing/header_term.h"
#include "testing/reason.h"
#include "testing/sector_markers.h"
#include "testing/term_index.h"

namespace quillon {

/// Texts are UTF-8, empty for none.
struct FileFindings {
    std::optional<Reason> reason;  ///< why the file is not good
    std::string detail;            ///< what the reason tells further
    std::string doubt;             ///< the name of what speaks against a good file
    std::string doubtDetail;       ///< what the doubt tells further

    friend bool operator==(const FileFindings&, const FileFindings&) = default;
};

/// What findings go by, as it was at one moment. Never changed, so that threads may share it. The terms of all
/// extensions take some tenths of a second of a slow disk: whoever first needs them reads them, on its thread.
class FindingRules {
public:
    FindingRules(SectorMarkers markers, CommonList common, NativePath databaseFolder)
        : markers_(std::move(markers)), common_(std::move(common)), databaseFolder_(std::move(databaseFolder)) {}

    /// `size`: bytes of the whole file. `own`: the terms of its extension, null when it has no term file.
    [[nodiscard]] FileFindings find(const FileHead& head, std::optional<Grade> grade, std::uint64_t size,
                                    const SharedTerms& own) const;

private:
    [[nodiscard]] const TermIndex& index() const;

    SectorMarkers markers_;
    CommonList common_;
    NativePath databaseFolder_;
    mutable std::once_flag isRead_;
    mutable TermIndex index_;  // behind isRead_
};

/// Findings that nobody has looked for yet: all that it takes but the head.
struct OpenFindings {
    std::shared_ptr<const FindingRules> rules;  ///< null: there is nothing to be found
    SharedTerms own;
    std::optional<Grade> grade;
    std::uint64_t size = 0;

    [[nodiscard]] explicit operator bool() const { return rules != nullptr; }
    [[nodiscard]] FileFindings find(const FileHead& head) const { return rules->find(head, grade, size, own); }
};

}  // namespace quillon
