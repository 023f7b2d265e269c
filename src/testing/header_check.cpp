// SPDX-License-Identifier: MIT
#include "testing/header_check.h"

#include <cmath>

#include "text/fields.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr double kSmallestTested = 512;
// The magnitude of the attribute bit for encrypted files. Kept: the rule compares magnitudes, so that a higher bit
// alone grades as encrypted too (test AnAttributeValueAbove16384IsEncryptedWhateverItsBits).
constexpr double kEncryptedFrom = 16384;

// A size is a fixed-point number with four decimals.
double fixedPoint(double value) {
    return std::nearbyint(value * 10000.0) / 10000.0;
}

tl::unexpected<FileError> tooFewFields() {
    return failure(ErrorKind::Subscript, "Subscript out of range");
}

}  // namespace

std::u16string_view HeaderCheck::counted(Grade grade) {
    host_.raise(grade);
    return messages_[grade];
}

// What size and attributes decide; no value when they leave it to the content.
Result<std::optional<Grade>> HeaderCheck::judgeRow(std::span<const std::u16string_view> fields) {
    if (fields.size() < 3)
        return tooFewFields();
    const double size = fixedPoint(numericPrefix(fields[2]));
    if (size == 0)
        return Grade::ZeroBytes;
    if (size < kSmallestTested)
        return Grade::TooSmall;
    if (fields.size() < 4)
        return tooFewFields();
    const auto attributes = fields[3].substr(0, fields[3].find(u';'));
    if (numericPrefix(attributes) >= kEncryptedFrom)
        return Grade::Encrypted;
    return std::nullopt;
}

bool HeaderCheck::mayOpen(std::span<const std::u16string_view> fields, std::u16string_view extension) {
    const auto judged = judgeRow(fields);
    return judged && !*judged && !extension.empty() && (host_.useCommonHeaders() || termFiles_.mayHave(extension));
}

Result<std::u16string_view> HeaderCheck::checkFile(std::span<const std::u16string_view> fields,
                                                   std::u16string_view extension) {
    const auto judged = judgeRow(fields);
    if (!judged)
        return failure(judged.error());
    if (*judged)
        return counted(**judged);

    const std::vector<CompiledTerm>* terms = termFiles_.find(extension);
    if (terms == nullptr && !host_.useCommonHeaders())
        return counted(Grade::Unknown);

    toNative(fields[0], nativePath_);
    if (!heads_.readHead(nativePath_, head_)) {
        const auto result = counted(Grade::AccessError);
        host_.logAccessError("Access Error : " + readable(nativePath_));
        return result;
    }
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
