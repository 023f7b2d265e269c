// SPDX-License-Identifier: MIT
#include "job/file_grader.h"

#include <algorithm>

#include "testing/second_opinion/second_opinion.h"

namespace quillon {

namespace {

// A list may hold any number.
constexpr double kLargest = 9e18;

}  // namespace

FileGrader::FileGrader(const Installation& installation, const ReportMessages& messages, const CommonList& commonList,
                       const PassContext& context)
    : installation_(installation),
      messages_(messages),
      commonList_(commonList),
      context_(context),
      heads_(context.surroundings.loop.mayStandStill() ? StandingStill::Allowed : StandingStill::Never) {
}

HeaderCheck& FileGrader::headerTest() {
    const std::string& folder = installation_.paths().localDatabase.native();
    if (!test_ || folder != databaseFolder_) {
        databaseFolder_ = folder;
        termFiles_.emplace(NativePath(folder));
        test_.emplace(*termFiles_, messages_, commonList_, static_cast<HeaderCheckHost&>(*this));
    }
    return *test_;
}

Result<FileVerdict> FileGrader::checkFile(const ListRow& row, std::u16string_view extension, HeadReader& heads) {
    auto verdict = headerTest().checkFile(row, extension, heads);
    if (!verdict)
        return verdict;
    if (verdict->grade)
        ++context_.state.counters[*verdict->grade];
    if (verdict->head != nullptr) {
        ++context_.state.counters.tested;
        if (context_.state.options.keepEvidence)
            findMore(row, *verdict);
    }
    return verdict;
}

// What stands beside the grade, and has no other place than the evidence.
void FileGrader::findMore(const ListRow& row, FileVerdict& verdict) {
    if (!verdict.grade || kGrades[*verdict.grade].quality.value != Quality::Recovered)
        return;
    const auto doubt = secondOpinion(verdict.head->given(),
                                     static_cast<std::uint64_t>(std::clamp(row.size().value_or(0), 0.0, kLargest)));
    if (!doubt)
        return;
    verdict.findings.doubt = doubtKindName(doubt->kind);
    verdict.findings.doubtDetail = doubt->sentence;
}

bool FileGrader::mayOpen(const ListRow& row) {
    return headerTest().mayOpen(row);
}

}  // namespace quillon
