// SPDX-License-Identifier: MIT
#include "testing/header_check.h"

#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr double kSmallestTested = 512;
// The magnitude of the attribute bit for encrypted files. Kept: the rule compares magnitudes, so that a higher bit
// alone grades as encrypted too (test AnAttributeValueAbove16384IsEncryptedWhateverItsBits).
constexpr double kEncryptedFrom = 16384;

tl::unexpected<FileError> tooFewFields() {
    return failure(ErrorKind::Subscript, "Subscript out of range");
}

}  // namespace

std::u16string_view HeaderCheck::counted(Grade grade) {
    host_.raise(grade);
    return messages_[grade];
}

// What size and attributes decide; no value when they leave it to the content.
Result<std::optional<Grade>> HeaderCheck::judgeRow(const ListRow& row) {
    const auto size = row.size();
    if (!size)
        return tooFewFields();
    if (*size == 0)
        return Grade::ZeroBytes;
    if (*size < kSmallestTested)
        return Grade::TooSmall;
    const auto attributes = row.attributes();
    if (!attributes)
        return tooFewFields();
    if (*attributes >= kEncryptedFrom)
        return Grade::Encrypted;
    return std::nullopt;
}

bool HeaderCheck::mayOpen(const ListRow& row) {
    const auto judged = judgeRow(row);
    return judged && !*judged && !row.extension().empty() &&
           (host_.useCommonHeaders() || termFiles_.mayHave(row.extension()));
}

Result<std::u16string_view> HeaderCheck::checkFile(const ListRow& row, std::u16string_view extension,
                                                   HeadReader& heads) {
    const auto judged = judgeRow(row);
    if (!judged)
        return failure(judged.error());
    if (*judged)
        return counted(**judged);

    const std::vector<CompiledTerm>* terms = termFiles_.find(extension);
    if (terms == nullptr && !host_.useCommonHeaders())
        return counted(Grade::Unknown);

    const auto read = heads.readHead(row.nativePath(), head_);
    if (!read) {
        const auto result = counted(Grade::AccessError);
        host_.logAccessError("Access Error : " + readable(row.nativePath()));
        return result;
    }
    if (*read == HeadState::Unread)
        host_.raiseUnread();
    foldHeader(head_);
    return testContent(terms);
}

std::u16string_view HeaderCheck::testContent(const std::vector<CompiledTerm>* terms) {
    host_.raiseTested();
    if (terms != nullptr) {
        const MatchResult match = matchTerms(*terms);
        if (match == MatchResult::GivenUp)
            return counted(Grade::Unknown);
        if (match != MatchResult::No)
            return counted(Grade::Good);
        if (!host_.useCommonHeaders())
            return counted(Grade::Corrupt);
    }
    const CommonMatch common = matchCommon(terms != nullptr);
    if (common.result == MatchResult::GivenUp)
        return counted(Grade::Unknown);
    if (common.result != MatchResult::No) {
        host_.raise(Grade::CommonHeader);
        return common.text;
    }
    return terms != nullptr ? counted(Grade::Corrupt) : counted(Grade::Unknown);
}

// The first record that does not say no decides. Kept: a record without a term counts as a hit, so an empty line makes
// every file that reaches it good (test AnEmptyLineInATermFileGradesGood); a position below 1 gives the search up (test
// ANegativePositionGradesUnknown).
MatchResult HeaderCheck::matchTerms(const std::vector<CompiledTerm>& terms) const {
    for (const auto& term : terms) {
        const MatchResult match = term.match(head_);
        if (match != MatchResult::No)
            return match;
    }
    return MatchResult::No;
}

HeaderCheck::CommonMatch HeaderCheck::matchCommon(bool termFileExists) {
    // Kept: a list that was never loaded is a hit without a text (test AnUnloadedCommonListIsAHitWithoutText).
    if (commonList_.records().empty())
        return {MatchResult::Defective, {}};
    for (const auto& record : commonList_.records()) {
        const MatchResult match = record.term.match(head_);
        if (match == MatchResult::No)
            continue;
        if (match == MatchResult::Yes && record.description)
            return {match, composite(record, termFileExists)};
        return {match, {}};
    }
    return {};
}

// Kept: without a term file and at a fixed position the description follows the message directly (test
// TheCompositeTextHasNoSeparatorForAFixedPositionWithoutATermFile).
std::u16string_view HeaderCheck::composite(const CommonRecord& record, bool termFileExists) {
    composite_ = trimRight(messages_[Grade::CommonHeader]);
    if (termFileExists || record.anywhere)
        composite_ += u" : ";
    composite_ += *record.description;
    return composite_;
}

}  // namespace quillon
