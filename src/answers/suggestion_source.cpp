// SPDX-License-Identifier: MIT
#include "answers/suggestion_source.h"

#include <algorithm>

#include "evidence/evidence_reader.h"

namespace quillon {

namespace {

// Where the head of a file belongs; null where nobody asks for it.
std::vector<HeaderBytes>* placeFor(const EvidenceRow& row, const SuggestionWish& wish, SuggestionHeads& heads) {
    if (row.extension != wish.extension)
        return &heads.others;
    if (wish.paths && wish.paths->contains(row.path()))
        return &heads.listed;
    if (row.grade == Grade::Good)
        return &heads.good;
    const bool bad = row.grade == Grade::Corrupt || row.grade == Grade::Unknown;
    return !wish.paths && bad ? &heads.listed : nullptr;
}

std::uint32_t numberOf(const std::string& extension, std::vector<std::string>& extensions) {
    const auto found = std::ranges::find(extensions, extension);
    if (found != extensions.end())
        return static_cast<std::uint32_t>(found - extensions.begin());
    extensions.push_back(extension);
    return static_cast<std::uint32_t>(extensions.size() - 1);
}

}  // namespace

Result<void> addHeads(const JobFiles& job, const SuggestionWish& wish, SuggestionHeads& heads) {
    if (job.evidence.empty())
        return failure(ErrorKind::NotFound, "job " + job.id + " has no evidence: its list holds no bytes of files");
    auto reader = EvidenceReader::open(job.evidence);
    if (!reader)
        return failure(reader.error());
    EvidenceRow row;
    while (true) {
        const auto more = reader->next(row);
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        auto* const place = row.head ? placeFor(row, wish, heads) : nullptr;
        if (place == nullptr)
            continue;
        const auto head = reader->head(row);
        if (!head)
            return failure(head.error());
        if (*head == nullptr || (*head)->length < kHeaderBytes)
            continue;
        place->push_back((*head)->bytes);
        if (place == &heads.others)
            heads.otherExtensions.push_back(
                numberOf(row.extension.empty() ? "(none)" : row.extension, heads.extensions));
    }
}

}  // namespace quillon
