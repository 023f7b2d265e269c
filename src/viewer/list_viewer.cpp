// SPDX-License-Identifier: MIT
#include "viewer/list_viewer.h"

#include <algorithm>

#include "app/file_list.h"
#include "app/history_dialogs.h"
#include "job/job.h"
#include "platform/folders.h"
#include "testing/rule_line.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/numbers.h"
#include "text/page_loss.h"
#include "text/page_text.h"
#include "text/unicode.h"
#include "viewer/categories.h"
#include "viewer/list_filter.h"

namespace quillon {

namespace {

constexpr const char* kRetestFailed =
    "Unable to perfor the function. Please make sure that the file is not in use in another application.";

std::string notShownText(int rows) {
    if (rows == 0)
        return {};
    return grouped(rows) + (rows == 1 ? " row with a comma is not shown" : " rows with commas are not shown");
}

// A path as a skip term. One that a person cannot read comes as the list stores it, where a "?" stands for a character
// of any kind: its visible escape would fit no file.
std::string skipTermOf(std::u16string_view path) {
    const std::string native = toNative(path);
    if (const std::string shown = readable(std::string_view(native)); shown == native)
        return shown;
    PageText stored = toPage(std::string_view(native));
    std::ranges::replace_if(
        stored.bytes, [](char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; }, '?');
    return toUtf8(stored);
}

}  // namespace

ViewedJob viewedJob(Job& job) {
    return {job.installation(), job.surroundings(), job.kept(),        job.lists(),
            job.grader(),       job.commonList,     job.passContext(), job};
}

void ListViewer::load() {
    state = ViewerState{};
    visit_ = {};
    state.categories = {kPleaseSelect};
    state.marks = {kPleaseSelect};
    temporaryListPath_ = job_.lists.rawPath();
    listPath_ = job_.lists.finalPath().value_or(NativePath{});
    loadCategories();
    lookAtEvidence();
}

void ListViewer::loadCategories() {
    const Paths& paths = job_.installation.paths();
    const NativePath errors = fileIn(paths.localSettings, kErrorsFileName);
    if (!paths.localSettings.empty() && pathExists(errors)) {
        state.status = "Loading error messages";
        const auto lines = readCategories(errors, job_.grader.messages());
        if (!lines) {
            job_.surroundings.dialogs.warn("Error", "Error : " + lines.error().text + " occurred ");
            return;
        }
        state.categories.insert(state.categories.end(), lines->begin(), lines->end());
        state.marks.insert(state.marks.end(), lines->begin(), lines->end());
        state.status = "Ready ..>";
        return;
    }
    job_.surroundings.dialogs.warn("Error", "Unable to find Report Header Database. This should be stored in " +
                                                readable(paths.localPath.native()) +
                                                "\\Settings\\errors.dat. Switching to default settings.\r\n");
    const ReportMessages fallback = ReportMessages::fallback();
    state.categories.insert(state.categories.end(), fallback.values.begin(), fallback.values.end());
}

int ListViewer::categoryOf(Grade grade) const {
    const auto trimmed = [](std::u16string_view text) { return trimRight(text); };
    const auto found = std::ranges::find(state.categories, trimmed(job_.grader.messages()[grade]), trimmed);
    return found == state.categories.end() ? 0 : static_cast<int>(found - state.categories.begin());
}

CopiesHandover ListViewer::forCopies() const {
    const bool isChosen = state.category > 0 && state.category < static_cast<int>(state.categories.size());
    const auto chosen = isChosen ? state.categories[static_cast<std::size_t>(state.category)] : std::u16string();
    const std::u16string& category = filtered_.empty() ? chosen : filtered_;
    CopiesHandover handover{listPath_.native(), {}, {}, false};
    for (const GradeRow& row : kGrades.values) {
        if (!category.empty() && trimRight(std::u16string_view(job_.grader.messages()[row.grade])) ==
                                     trimRight(std::u16string_view(category)))
            handover.wish.grades.push_back(row.grade);  // texts may be the same
    }
    const std::string extension = utf16ToUtf8(state.extensions.chosenText());
    if (!extension.empty()) {
        handover.wish.extensions = {extension};
        handover.what = "." + readable(std::string_view(extension));
    }
    return handover;
}

void ListViewer::chooseCategory(int entry) {
    if (entry < 0 || entry >= static_cast<int>(state.categories.size()))
        return;
    state.category = entry;
    state.runEnabled =
        canEditCategory(entry, state.categories[static_cast<std::size_t>(entry)], job_.grader.messages());
}

void ListViewer::updateLabels() {
    state.matching = "Matching : " + plainNumber(state.rows.count());
    state.status.clear();
}

void ListViewer::filter() {
    state.rows.clear();
    state.notShown.clear();
    state.currentRow = -1;
    state.topRow = 0;
    ++state.contents;
    goBusy();
    state.extensions.clear();
    host_.showState();
    // The job ID of this moment, not the one of the opening.
    const auto list = job_.lists.finalPath();
    if (!list || !pathExists(*list)) {
        tellMissingList();
        goIdle();
        return;
    }
    state.busyPointer = true;
    host_.showState();
    listPath_ = *list;
    lookAtEvidence();
    loadRows(*list);
    ++state.contents;
    updateLabels();
    state.extensions.rebuild(state.rows);
    goIdle();
    state.busyPointer = false;
    host_.showState();
    if (state.rows.count() > 0)
        host_.focus("iGrid1");
}

void ListViewer::loadRows(const NativePath& list) {
    auto reader = ListReader::open(list);
    if (!reader)
        return;
    filtered_ = state.categories[static_cast<std::size_t>(state.category)];
    const FilterWish wish{state.categories[static_cast<std::size_t>(state.category)],
                          state.category == kCommonHeaderCategory, leadingNumber(state.maxFiles)};
    const Filtered filtered = filterList(*reader, wish, state.rows);
    state.notShown = notShownText(filtered.withCommas);
    if (filtered.end == FilterEnd::LimitReached)
        job_.surroundings.dialogs.tell(kProgramTitle, "Maximum file limit reached");
}

void ListViewer::tellMissingList() {
    const std::string& jobId = job_.lists.jobId();
    std::string text = "File list for " + readable(std::string_view(jobId)) + " does not exist. ";
    const NativePath& folder = job_.installation.paths().zipPath;
    const auto archive = childPath(folder, jobId + ".zip");
    if (!folder.empty() && archive && pathExists(*archive))
        text += "The file you requested appears to have been archived";
    job_.surroundings.dialogs.warn("List Error", text);
}

void ListViewer::selectRow(int row) {
    if (row < 0 || row >= state.rows.shown())
        return;
    state.currentRow = row;
    const ViewRows::Id id = state.rows.idAt(row);
    if (state.rows.extension(id) == u"c")
        state.extensions.add(u"c");
    if (state.extensions.entries().empty())
        return;
    selectExtension(std::max(0, state.extensions.find(state.rows.foldedExtension(id))));
}

void ListViewer::selectExtension(int entry) {
    if (entry < 0 || entry >= static_cast<int>(state.extensions.entries().size()))
        return;
    state.extensions.choose(entry);
    if (state.currentRow < 0 || state.rows.count() == 0)
        return;
    const std::u16string extension(state.extensions.chosenText());
    const auto& current = state.rows.foldedExtension(state.rows.idAt(state.currentRow));
    const int count = current == lowered(extension) ? state.rows.countOf(extension) : 0;
    state.status = readable(std::u16string_view(extension)) + " = " + grouped(count);
}

void ListViewer::addToSkipList() {
    const Paths& paths = job_.installation.paths();
    const std::string proposal =
        state.currentRow < 0 ? std::string() : skipTermOf(state.rows.path(state.rows.idAt(state.currentRow)));
    const auto term = job_.surroundings.dialogs.input(
        "Add to skip list", "Please enter the term you want to add to the skip list.", proposal);
    if (!term || term->empty())
        return;
    const std::string lost = lostOnPage(*term);
    const std::string stored = lost.empty() ? "" : "Stored as \"?\" : " + lost;
    if (!stored.empty())
        state.status = stored;
    // The share first: whoever does not wait for it sees that it lacks the term, whatever becomes of the local list.
    std::vector<NativePath> roots{paths.localSettings};
    if (paths.useSharedDb)
        roots.insert(roots.begin(), paths.sharedSettings);
    std::string left;
    std::string why;
    for (const auto& settings : roots) {
        const auto added = appendSkipTerm(settings, toPage(*term));
        if (added)
            continue;
        left += (left.empty() ? "" : ", ") + readable(settings.parent_path().native());
        why = added.error().text;
    }
    if (!left.empty())
        state.status = (stored.empty() ? "" : stored + "; ") + "Not added to the skip list of " + left + " : " + why;
}

// A failure: the turn of this program did not come. Of a list that cannot be written nothing is said: a share may be
// away.
Result<void> ListViewer::appendSkipTerm(const NativePath& settings, const PageText& term) {
    DatabaseChange change;
    change.screen = "File List Viewer";
    change.job = job_.context.state.options.jobId;
    auto turn = waitToWrite(job_.surroundings.dialogs, settings);
    if (!turn)
        return failure(turn.error());
    const auto changed = changeNoted(*turn, fileIn(settings, kSkipListFileName), std::move(change),
                                     [&] { return appendRuleLine(settings, kSkipListFileName, term); });
    if (changed)
        warnOfLostNote(job_.surroundings.dialogs, *changed);
    return {};
}

std::optional<EditorHandover> ListViewer::openEditor() {
    const std::u16string extension(state.extensions.chosenText());
    const auto& category = state.categories[static_cast<std::size_t>(state.category)];
    if (category != job_.grader.messages()[Grade::NoExtension] && extension.empty()) {
        host_.beep();
        return std::nullopt;
    }
    EditorHandover handover{state.category, extension, {}, {}, {}};
    if (evidence_->isSourceAway())
        handover.keptHead = [evidence = evidence_](std::u16string_view path) { return evidence->head(0, path); };
    for (int row = 0; row < state.rows.shown(); ++row) {
        const ViewRows::Id id = state.rows.idAt(row);
        if (state.rows.foldedExtension(id) == extension)
            handover.files.push_back({std::u16string(state.rows.path(id)), std::u16string(state.rows.problem(id))});
    }
    handover.job = job_.context.state.options.jobId;
    return handover;
}

bool ListViewer::confirmRetest(std::u16string_view extension) {
    const auto folder = missingSource(state.rows, extension);
    return !folder || job_.surroundings.dialogs.ask(
                          "Source not found",
                          "The folder of these files is not there:\r\n" + readable(std::u16string_view(*folder)) +
                              "\r\n\r\nA retest now grades each of them as an access error. Connect the source first. "
                              "Do you want to retest all the same?",
                          BoxStyle::Warning);
}

void ListViewer::tellUnloadedCommonList() {
    const PassContext& context = job_.context;
    if (context.state.options.useCommonHeaders && job_.commonList.records().empty())
        context.log(
            "Retest without common headers : they are loaded by a job, and none has run yet. A file that fits no term "
            "loses its result. Run a job, or untick \"Use Common Headers\", and retest again.",
            kLightOrange);
}

RetestEnd ListViewer::runRetest(std::u16string_view extension) {
    int counted = -1;
    Retest pass(job_.grader, job_.kept, visit_, state.rows, [this, &counted] {
        // The pointer is the normal one from the first line on, though the pass goes on.
        state.busyPointer = false;
        if (state.rows.count() != counted) {
            counted = state.rows.count();
            updateLabels();
        }
        job_.surroundings.loop.turn();
    });
    state.passRunning = true;
    const RetestEnd end = pass.run(listPath_, temporaryListPath_, extension);
    state.passRunning = false;
    return end;
}

void ListViewer::retest() {
    Dialogs& dialogs = job_.surroundings.dialogs;
    const std::u16string extension(state.extensions.chosenText());
    if (!confirmRetest(extension))
        return;
    tellUnloadedCommonList();
    goBusy();
    state.busyPointer = true;
    host_.showState();
    const RetestEnd end = runRetest(extension);
    if (end == RetestEnd::CopyInUse) {
        dialogs.warn("Error",
                     "Warning, the file appears to be open in another application! "
                     "Please close any programs that may be accessing the file list.");
        return;
    }
    state.busyPointer = false;
    settleRows();
    if (end == RetestEnd::Done) {
        endRetest();
    } else {
        host_.showState();
        dialogs.tell("Error", kRetestFailed);
    }
    goIdle();
    host_.showState();
    if (state.rows.count() > 0)
        host_.focus("iGrid1");
}

void ListViewer::endRetest() {
    updateLabels();
    lookAtEvidence();
    state.extensions.rebuild(state.rows);
    state.changed = true;
    host_.showState();
    host_.beep();
}

void ListViewer::settleRows() {
    if (state.rows.isSettled())
        return;
    if (state.currentRow >= 0) {
        const bool removed = state.rows.isRemoved(state.rows.idAt(state.currentRow));
        state.currentRow = removed ? -1 : state.rows.settledPlace(state.currentRow);
    }
    state.topRow = state.rows.settledPlace(state.topRow);
    state.rows.settle();
    ++state.contents;
}

}  // namespace quillon
