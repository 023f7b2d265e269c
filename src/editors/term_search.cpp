// SPDX-License-Identifier: MIT
#include "editors/term_search.h"

#include "testing/header_term.h"
#include "text/list_text.h"
#include "text/numbers.h"
#include "text/page_text.h"

namespace quillon {

std::optional<SearchCounts> searchTerm(const CandidateTerm& candidate, const std::vector<std::u16string>& files,
                                       HeadReader& heads) {
    const auto term =
        CompiledTerm::fromParts(numericPrefix(candidate.position), toPage(candidate.term).bytes, candidate.hexadecimal);
    SearchCounts counts;
    HeaderBytes head;
    std::string path;
    for (const auto& file : files) {
        toNative(file, path);
        if (!heads.readHead(path, head))
            return std::nullopt;
        foldHeader(head);
        ++(term.match(head) == MatchResult::Yes ? counts.good : counts.bad);
    }
    return counts;
}

std::optional<int> repairedPosition(const CandidateTerm& candidate, const HeaderBytes& inView) {
    const std::int32_t position = roundedNumber(numericPrefix(candidate.position));
    if (position < 1)
        return std::nullopt;
    const std::string typed = toPage(candidate.term).bytes;
    const std::string term = candidate.hexadecimal ? hexToText(typed) : typed;
    const std::string_view head(inView.data(), inView.size());
    if (head.find(term, static_cast<std::size_t>(position) - 1) != head.npos)
        return std::nullopt;
    const auto first = head.find(term);
    if (first == head.npos)
        return std::nullopt;
    return static_cast<int>(first) + 1;
}

}  // namespace quillon
