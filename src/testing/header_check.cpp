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

FileVerdict HeaderCheck::verdict(Grade grade) const {
    FileVerdict verdict;
    verdict.grade = grade;
    verdict.text = messages_[grade];
    return verdict;
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

Result<FileVerdict> HeaderCheck::checkFile(const ListRow& row, std::u16string_view extension, HeadReader& heads) {
    const auto judged = judgeRow(row);
    if (!judged)
        return failure(judged.error());
    if (*judged)
        return verdict(**judged);

    SharedTerms terms = termFiles_.find(extension);
    if (terms == nullptr && !host_.useCommonHeaders())
        return verdict(Grade::Unknown);

    const auto length = heads.readHead(row.nativePath(), head_.bytes);
    if (!length) {
        host_.logAccessError("Access Error : " + readable(row.nativePath()));
        return verdict(Grade::AccessError);
    }
    head_.length = static_cast<std::uint16_t>(*length);
    folded_ = head_.bytes;
    foldHeader(folded_);
    FileVerdict judgement = judgeContent(terms.get());
    judgement.head = &head_;
    judgement.terms = std::move(terms);
    return judgement;
}

FileVerdict HeaderCheck::judgeContent(const std::vector<CompiledTerm>* terms) {
    if (terms != nullptr) {
        const MatchResult match = matchTerms(*terms);
        if (match == MatchResult::GivenUp)
            return verdict(Grade::Unknown);
        if (match != MatchResult::No)
            return verdict(Grade::Good);
        if (!host_.useCommonHeaders())
            return verdict(Grade::Corrupt);
    }
    const CommonMatch common = matchCommon(terms != nullptr);
    if (common.result == MatchResult::GivenUp)
        return verdict(Grade::Unknown);
    if (common.result != MatchResult::No) {
        FileVerdict found = verdict(Grade::CommonHeader);
        found.text = common.text;
        return found;
    }
    return terms != nullptr ? verdict(Grade::Corrupt) : verdict(Grade::Unknown);
}

// The first record that does not say no decides. Kept: a record without a term counts as a hit, so an empty line makes
// every file that reaches it good (test AnEmptyLineInATermFileGradesGood); a position below 1 gives the search up (test
// ANegativePositionGradesUnknown).
MatchResult HeaderCheck::matchTerms(const std::vector<CompiledTerm>& terms) const {
    for (const auto& term : terms) {
        const MatchResult match = term.match(folded_);
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
        const MatchResult match = record.term.match(folded_);
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
