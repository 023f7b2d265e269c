// SPDX-License-Identifier: MIT
#include "job/copy_pass.h"

#include <algorithm>

#include <fmt/format.h>

#include "app/file_list.h"
#include "app/folder_structure.h"
#include "app/turn_until.h"
#include "platform/folders.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

// Files above this size show a per-file percentage.
constexpr std::uint64_t kLargeFile = 2'000'000;

std::string withOneSlash(std::string folder) {
    folder.push_back('/');
    while (folder.size() > 1 && folder[folder.size() - 2] == '/') folder.pop_back();
    return folder;
}

bool leadsUp(std::string_view relative) {
    const auto parts = splitFields(relative, '/');
    return std::find(parts.begin(), parts.end(), "..") != parts.end();
}

}  // namespace

std::optional<std::string> copyTarget(const std::string& targetFolder, std::string_view source) {
    const auto first = source.find_first_not_of('/');
    const auto relative = first == source.npos ? std::string_view() : source.substr(first);
    if (relative.empty() || leadsUp(relative))
        return std::nullopt;
    return targetFolder + std::string(relative);
}

CopyPass::CopyPass(const PassContext& context, const JobLists& lists, std::optional<ListEncoding> encoding)
    : context_(context),
      lists_(lists),
      encoding_(encoding),
      copies_(context.surroundings.loop.mayStandStill() ? StandingStill::Allowed : StandingStill::Never,
              context.state.care) {
}

void CopyPass::run() {
    JobState& state = context_.state;
    targetFolder_ = withOneSlash(state.options.target.value_or(NativePath()).native());
    const auto list = lists_.finalPath();
    if (!list || !pathExists(*list)) {
        context_.surroundings.dialogs.tell("Error copying files", "Unable to find file list..", BoxStyle::Critical);
        state.counters.rowsRead = 0;
        notReached();
        return;
    }
    realSource_ = state.options.source ? realPath(*state.options.source) : NativePath();
    state.progress = {state.progress.shown, 100, 0};
    state.counters.rowsRead = 0;
    state.texts.copiedCaption = "Copying file:";
    state.texts.status = "Copying data ...";
    state.texts.jobPercent.clear();
    auto reader = ListReader::open(*list, encoding_);
    if (!reader) {
        context_.surroundings.dialogs.tell(kProgramTitle, "Error : " + reader.error().text);
        notReached();
    } else {
        while (!state.stopRequested) {
            lookAhead(*reader);
            if (rows_.count() == 0)
                break;
            copyRow(rows_.first());
            rows_.dropFirst();
            context_.turn();
        }
        if (reader->error()) {
            context_.surroundings.dialogs.tell(kProgramTitle, "Error : " + reader->error()->text);
            notReached();
        }
    }
    state.texts.status = "Ready >";
    state.texts.jobPercent.clear();
}

// A list that cannot be read, or not to its end, leaves files without a copy.
void CopyPass::notReached() {
    JobCounters& counters = context_.state.counters;
    counters.notCopied += std::max(counters.files - counters.rowsRead, 1);
}

// Some rows at once, since to wake a thread for each would cost more than it does.
void CopyPass::lookAhead(ListReader& list) {
    if (rows_.count() > CopiesAhead::kMost / 2)
        return;
    while (rows_.count() < CopiesAhead::kMost) {
        AheadRow& ahead = rows_.add();
        if (!list.next(ahead.row)) {
            rows_.dropLast();
            return;
        }
        ahead.refused = askForCopy(ahead.row.nativePath());
    }
}

std::optional<CopyError> CopyPass::askForCopy(const std::string& source) {
    const auto target = copyTarget(targetFolder_, source);
    if (!target)
        return CopyError{CopySide::Source, {ErrorKind::BadName, "no path below a target"}};
    if (!prepareFolder(*target)) {
        const std::string text = "the target folder lies in the source, which is never written to";
        return CopyError{CopySide::Target, {ErrorKind::PermissionDenied, text}};
    }
    copies_.ask(source, *target);
    return std::nullopt;
}

void CopyPass::copyRow(const AheadRow& ahead) {
    const std::string& source = ahead.row.nativePath();
    ++context_.state.counters.rowsRead;
    context_.state.texts.copied = grouped(context_.state.counters.rowsRead);
    showJobProgress(source);
    context_.surroundings.loop.workingOn(source);
    const auto copied = ahead.refused ? tl::unexpected<CopyError>(*ahead.refused) : finishFirst();
    if (copied) {
        ++context_.state.counters.copied;
        ++context_.state.passes.copies;
        return;
    }
    ++context_.state.counters.copyErrors;
    context_.logAbout(source, "Error copying : " + readable(source));
    if (copied.error().side != CopySide::Cancelled)
        context_.logAbout(source, copied.error().text());
}

tl::expected<void, CopyError> CopyPass::finishFirst() {
    const auto report = [this](std::uint64_t done, std::uint64_t total) { return progress(done, total); };
    const auto ends = [&](std::chrono::milliseconds pause) { return copies_.firstEnds(pause, report); };
    if (!ends(kTurnInterval))
        turnUntil(context_.surroundings.loop, ends);
    return copies_.takeFirst();
}

void CopyPass::showJobProgress(const std::string& source) {
    JobState& state = context_.state;
    const double done = state.counters.rowsRead;
    const double fraction = state.counters.files > 0 ? done / state.counters.files : 0;
    state.texts.jobPercent = percent(fraction);
    state.progress.value = std::clamp<std::int64_t>(static_cast<std::int64_t>(fraction * 100), 0, 100);
    state.texts.currentFile = "Copying " + readable(source);
}

// Creates the folders that lead to a target, with at most two tries. Consecutive files of one folder ask once. False
// when they would lie in the source: nothing is created there.
bool CopyPass::prepareFolder(const std::string& target) {
    const std::string_view folder = std::string_view(target).substr(0, target.rfind('/'));
    if (folder == lastFolder_)
        return !lastFolderRefused_;
    const NativePath parent(folder);
    lastFolder_ = folder;
    lastFolderRefused_ = liesInSource(parent);
    if (lastFolderRefused_)
        return false;
    for (int tries = 0; tries < 2 && !pathExists(parent); ++tries) createFolderChain(target);
    return true;
}

// Kept: the percentage of a large file is the constant 0, whatever was moved; what the routine is for is the turn of
// the event loop (test ALargeFileShowsZeroPercentAndTurnsTheLoopPerChunk).
bool CopyPass::progress(std::uint64_t done, std::uint64_t total) {
    JobState& state = context_.state;
    if (done == 0)
        state.fileProgress = 0;
    if (done > 0 && total > kLargeFile) {
        state.fileProgress = 0;
        state.texts.filePercent = ".00%";
        context_.turn();
    }
    return !state.copyCancelled;
}

// A target such as "/", or a link in it, may lead back to where the files come from.
bool CopyPass::liesInSource(const NativePath& folder) const {
    return !realSource_.empty() && liesIn(realPath(folder), realSource_);
}

}  // namespace quillon
