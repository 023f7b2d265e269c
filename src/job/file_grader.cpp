// SPDX-License-Identifier: MIT
#include "job/file_grader.h"

#include <algorithm>

#include "platform/folders.h"
#include "testing/messages_for.h"

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
    auto verdict = gradeFile(row, extension, heads);
    if (verdict && verdict->open) {
        verdict->findings = verdict->open.find(*verdict->head);
        verdict->open = {};
    }
    return verdict;
}

Result<FileVerdict> FileGrader::gradeFile(const ListRow& row, std::u16string_view extension, HeadReader& heads,
                                          const KnownVerdict* known) {
    static const FileHead leftOut{kHeaderBytes, {}};
    if (known != nullptr && mayOpen(row))
        return counted({known->grade, known->text, &leftOut, nullptr, known->findings, {}});
    inWork_ = row.nativePath();
    auto verdict = headerTest().checkFile(row, extension, heads);
    if (!verdict)
        return verdict;
    *verdict = counted(std::move(*verdict));
    if (verdict->head != nullptr && context_.state.options.keepEvidence)
        verdict->open = openFindings(row, *verdict);
    return verdict;
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

OpenFindings FileGrader::openFindings(const ListRow& row, const FileVerdict& verdict) {
    if (!rules_)
        rules_ = std::make_shared<const FindingRules>(markers(), commonList_, NativePath(databaseFolder_));
    constexpr double kMostBytes = 9e18;  // a list may hold any number, an integer of 64 bits not
    const double size = std::clamp(row.size().value_or(0), 0.0, kMostBytes);
    return {rules_, verdict.terms, verdict.grade, static_cast<std::uint64_t>(size)};
}

SectorMarkers FileGrader::markers() {
    auto markers = loadSectorMarkers(installation_.paths());
    if (!markers)
        context_.rulesNotRead("Bad sector markers", markers.error());
    return markers.value_or(SectorMarkers());
}

bool FileGrader::mayOpen(const ListRow& row) {
    return headerTest().mayOpen(row);
}

}  // namespace quillon
