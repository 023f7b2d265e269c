// SPDX-License-Identifier: MIT
#include "job/file_grader.h"

#include <algorithm>

#include "platform/folders.h"
#include "testing/messages_for.h"
#include "testing/second_opinion/second_opinion.h"

namespace quillon {

void loadCommonHeaders(const Installation& installation, const PassContext& context, CommonList& list) {
    const NativePath file = fileIn(installation.paths().localSettings, kCommonHeadersFileName);
    if (!context.state.options.useCommonHeaders || !pathExists(file))
        return;
    if (const auto loaded = list.load(file); !loaded)
        context.rulesNotRead("Common headers", loaded.error());
}

void lookAtReportMessages(const Installation& installation, const ReportMessages& messages,
                          const PassContext& context) {
    const Paths& paths = installation.paths();
    const auto local = readLocalMessages(paths);
    const ReportMessages fallback = ReportMessages::fallback();
    if (!local && local.error().kind == ErrorKind::Subscript)  // it was read, and is answered by the built-in ones
        context.log("The built-in report messages stand in the list : " + local.error().text, kLightOrange);
    else if (!local && local.error().kind != ErrorKind::NotFound)
        context.rulesNotRead("Report messages", local.error());
    else if (local && paths.useSharedDb && messages == fallback && *local != fallback)
        context.rulesNotRead("Report messages", {ErrorKind::PathAccess,
                                                 "the shared ones could not be fetched; the built-in texts stand "
                                                 "in the list"});
}

FileGrader::FileGrader(const Installation& installation, const ReportMessages& messages, const CommonList& commonList,
                       const PassContext& context, TermFiles::Looks looks)
    : installation_(installation), messages_(messages), commonList_(commonList), context_(context), looks_(looks) {
}

// A read that is to be given up cannot be one of the pass's own thread.
HeadsAhead& FileGrader::heads() {
    const bool mayStandStill = context_.surroundings.loop.mayStandStill() && !context_.state.options.hangLimit;
    if (!heads_)
        heads_.emplace(mayStandStill ? StandingStill::Allowed : StandingStill::Never, nullptr, context_.state.care);
    return *heads_;
}

HeaderCheck& FileGrader::headerTest() {
    const std::string& folder = installation_.paths().localDatabase.native();
    if (!test_ || folder != databaseFolder_) {
        databaseFolder_ = folder;
        termFiles_.emplace(
            NativePath(folder), [this](const FileError& why) { context_.rulesNotRead("Term file", why); }, looks_);
        test_.emplace(*termFiles_, messages_, commonList_, static_cast<HeaderCheckHost&>(*this));
    }
    return *test_;
}

Result<FileVerdict> FileGrader::checkFile(const ListRow& row, std::u16string_view extension, HeadReader& heads) {
    inWork_ = row.nativePath();
    auto verdict = headerTest().checkFile(row, extension, heads);
    if (!verdict)
        return verdict;
    *verdict = counted(std::move(*verdict));
    if (verdict->head != nullptr && context_.state.options.keepEvidence)
        addFindings(row, *verdict);
    return verdict;
}

Result<FileVerdict> FileGrader::checkFile(const ListRow& row, std::u16string_view extension, HeadReader& heads,
                                          const KnownVerdict* known) {
    static const FileHead leftOut{kHeaderBytes, {}};
    if (known == nullptr || !mayOpen(row))
        return checkFile(row, extension, heads);
    return counted({known->grade, known->text, &leftOut, nullptr, known->findings});
}

FileVerdict FileGrader::counted(FileVerdict verdict) {
    JobCounters& counters = context_.state.counters;
    if (verdict.grade)
        ++counters[*verdict.grade];
    if (verdict.head != nullptr)
        ++counters.tested;
    if (verdict.head != nullptr && verdict.head->length < kHeaderBytes)
        ++counters.unreadHeads;
    return verdict;
}

// What the same bytes tell beside the grade: why a file is not good, and what speaks against one that looks good.
void FileGrader::addFindings(const ListRow& row, FileVerdict& verdict) {
    const FileHead& head = *verdict.head;
    if (verdict.grade != Grade::Good) {
        const TermIndex& index = terms();
        FoundReason found = findReason(head.given(), markers_, verdict.terms, commonList_, index);
        verdict.findings.reason = found.reason;
        verdict.findings.detail = std::move(found.detail);
    }
    if (verdict.grade && kGrades[*verdict.grade].quality.value == Quality::Recovered) {
        constexpr double kMostBytes = 9e18;  // a list may hold any number, an integer of 64 bits not
        const double size = std::clamp(row.size().value_or(0), 0.0, kMostBytes);
        const auto doubt = secondOpinion(head.given(), static_cast<std::uint64_t>(size));
        if (doubt) {
            verdict.findings.doubt = doubtKindName(doubt->kind);
            verdict.findings.doubtDetail = doubt->sentence;
        }
    }
}

void FileGrader::readMarkers() {
    auto markers = loadSectorMarkers(installation_.paths());
    if (markers)
        markers_ = std::move(*markers);
    else
        context_.rulesNotRead("Bad sector markers", markers.error());
}

// What reasons are found by is read when the first one is asked for.
const TermIndex& FileGrader::terms() {
    if (!terms_) {
        terms_ = TermIndex::ofFolder(NativePath(databaseFolder_));
        readMarkers();
    }
    return *terms_;
}

bool FileGrader::mayOpen(const ListRow& row) {
    return headerTest().mayOpen(row);
}

}  // namespace quillon
