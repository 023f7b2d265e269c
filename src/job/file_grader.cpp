// SPDX-License-Identifier: MIT
#include "job/file_grader.h"

namespace quillon {

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
    if (verdict->head != nullptr)
        ++context_.state.counters.tested;
    return verdict;
}

bool FileGrader::mayOpen(const ListRow& row) {
    return headerTest().mayOpen(row);
}

}  // namespace quillon
