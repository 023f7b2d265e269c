// SPDX-License-Identifier: MIT
#include "testing/finding_rules.h"

#include "testing/find_reason.h"
#include "testing/second_opinion/second_opinion.h"

namespace quillon {

FileFindings FindingRules::find(const FileHead& head, std::optional<Grade> grade, std::uint64_t size,
                                const SharedTerms& own) const {
    FileFindings findings;
    if (grade != Grade::Good) {
        FoundReason found = findReason(head.given(), markers_, own.get(), common_, index());
        findings.reason = found.reason;
        findings.detail = std::move(found.detail);
    }
    if (grade && kGrades[*grade].quality.value == Quality::Recovered) {
        if (const auto doubt = secondOpinion(head.given(), size)) {
            findings.doubt = doubtKindName(doubt->kind);
            findings.doubtDetail = doubt->sentence;
        }
    }
    return findings;
}

const TermIndex& FindingRules::index() const {
    std::call_once(isRead_, [this] { index_ = TermIndex::ofFolder(databaseFolder_); });
    return index_;
}

}  // namespace quillon
