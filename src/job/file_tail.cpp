// SPDX-License-Identifier: MIT
#include "job/file_tail.h"

#include <utility>

#include "testing/second_opinion/second_opinion.h"

namespace quillon {

namespace {

constexpr const char* kUnreadSentence = "The end of the file could not be read.";

bool isShownDoubt(const EvidenceRow& row) {
    return !row.tail.empty() && row.tail != tails::kWhole && row.tail != tails::kUnread;
}

}  // namespace

FileTail unreadTail() {
    return {tails::kUnread, kUnreadSentence};
}

bool hasTailToLookAt(std::string_view head, std::uint64_t size) {
    return hasKnownEnd(head, size) && !secondOpinion(head, size);
}

FileTail lookAtTail(SourceFiles& files, EndQuestion question) {
    if (!question.head) {
        FileHead head;
        const auto length = files.readHead(question.path, head.bytes);
        if (!length)
            return unreadTail();
        head.length = static_cast<std::uint16_t>(*length);
        question.head = std::string(head.given());
    }
    if (!hasTailToLookAt(*question.head, question.size))
        return {};
    const auto opinion = sourceEndOpinion(files, question);
    if (!opinion)
        return unreadTail();
    if (!*opinion)
        return {tails::kWhole, {}};
    return {std::string(doubtKindName((*opinion)->kind)), (*opinion)->sentence};
}

void judgeTail(EvidenceRow& row) {
    const bool recovered = row.grade && kGrades[*row.grade].quality.value == Quality::Recovered;
    if (!recovered || !row.doubt.empty())
        return;
    if (isShownDoubt(row))
        row.doubt = row.tail;
    row.doubtDetail = row.tailDetail;
}

bool isDoubtedByTail(const EvidenceRow& row) {
    return isShownDoubt(row) && row.doubt == row.tail && row.doubtDetail == row.tailDetail;
}

}  // namespace quillon
