// SPDX-License-Identifier: MIT
// What is shown of a job or a case, and which of its files. Compare, export and report stand in overview_work.cpp.
#include "answers/overview/overview.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "app/run_beside.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

struct Overview::Opened {
    std::unique_ptr<OverviewSource> source;
    FigureRows extensions;
    FigureRows reasons;
    std::unique_ptr<FolderNodes> folders;
};

namespace {

std::vector<FileChoice> madeFileChoices() {
    std::vector<FileChoice> choices = {{"All files", {}}};
    for (const Grade grade : kBoardOrder) {
        FileWish wish;
        wish.grades = {grade};
        choices.push_back({kGrades[grade].bar.name.value, wish});
    }
    FileWish doubtful;
    doubtful.doubt = true;
    choices.push_back({"Good, but doubtful", doubtful});
    FileWish unread;
    unread.unread = true;
    choices.push_back({"Not read whole", unread});
    return choices;
}

// Entry 0 is all of them.
Figures addSum(FigureRows& rows) {
    Figures sum;
    for (const auto& row : rows) sum += row.second;
    rows.insert(rows.begin(), {std::string(), sum});
    return sum;
}

int entryOf(int entry, const FigureRows& rows) {
    return entry >= 0 && entry < static_cast<int>(rows.size()) ? entry : 0;
}

}  // namespace

const std::vector<FileChoice>& fileChoices() {
    static const std::vector<FileChoice> choices = madeFileChoices();
    return choices;
}

void Overview::besideLoop(const std::function<void()>& work) {
    state.busy = true;
    host_.showState();
    runBeside(given_.surroundings.loop, work);
    state.busy = false;
}

void Overview::tell(const FileError& error) {
    state.remark = error.text;
    state.trouble = true;
}

Result<Overview::Opened> Overview::read(const std::vector<JobFiles>& jobs, const ReportMessages& messages) {
    auto source = openOverview(jobs, messages);
    if (!source)
        return failure(source.error());
    auto extensions = (*source)->extensions();
    auto reasons = (*source)->reasons();
    auto folders = FolderNodes::begin(**source);
    if (!extensions)
        return failure(extensions.error());
    if (!reasons)
        return failure(reasons.error());
    if (!folders)
        return failure(folders.error());
    return Opened{std::move(*source), std::move(*extensions), std::move(*reasons),
                  std::make_unique<FolderNodes>(std::move(*folders))};
}

void Overview::open(const std::string& job) {
    state.job = "Job " + readable(std::string_view(job));
    auto found = findJob(given_.installation.paths().localPath, job);
    if (!found) {
        tell(found.error());
        return;
    }
    state.job = "Job " + readable(std::string_view(found->id));
    std::vector<Scope> scopes;
    std::optional<Result<Opened>> opened;
    besideLoop(
        [&, job = *found, separator = given_.installation.paths().fileListSeparator, messages = given_.messages] {
            scopes = scopesOf(job, separator);
            opened.emplace(read(scopes.front().jobs, messages));
        });
    scopes_ = std::move(scopes);
    if (!*opened)
        tell(opened->error());
    else
        take(std::move(**opened), 0);
}

// The job, and the cases whose files stand beside its own.
std::vector<Overview::Scope> Overview::scopesOf(const JobFiles& job, const std::string& separator) {
    const NativePath folder = (job.evidence.empty() ? job.list : job.evidence).parent_path();
    std::vector<Scope> scopes = {{"Job " + readable(std::string_view(job.id)), job.id, {job}}};
    for (auto& found : casesOf(folder, separator, job.id))
        scopes.push_back({"Case " + readable(std::string_view(found.id)), found.id, std::move(found.jobs)});
    return scopes;
}

void Overview::chooseScope(int entry) {
    if (entry < 0 || entry >= static_cast<int>(scopes_.size()) || entry == state.scope)
        return;
    std::optional<Result<Opened>> opened;
    besideLoop([&, jobs = scopes_[static_cast<std::size_t>(entry)].jobs, messages = given_.messages] {
        opened.emplace(read(jobs, messages));
    });
    if (!*opened)
        tell(opened->error());
    else
        take(std::move(**opened), entry);
}

void Overview::take(Opened opened, int scope) {
    search_.reset();
    rows.showFiles(nullptr);
    source_ = std::move(opened.source);
    formerFolders_ = std::exchange(folders_, std::move(opened.folders));
    state.scope = scope;
    state.extension = state.reason = state.choice = 0;
    ++state.opened;
    state.extensions = std::move(opened.extensions);
    state.reasons = std::move(opened.reasons);
    state.total = addSum(state.extensions);
    addSum(state.reasons);
    state.knowsAll = source_->knowsAll();
    state.isOpen = true;
    describe();
    state.folder = &folders_->root();
    moveMap(folders_->root());
    find();
}

void Overview::describe() {
    const Figures& total = state.total;
    const auto value = quality(total);
    const std::int64_t base = judged(total);
    state.quality = value ? percent(*value) : "-";
    state.base = fmt::format("of the {} files that could be judged; {} of {} could not", grouped(base),
                             grouped(total.files - base), grouped(total.files));
    describeScope();
    state.remark.clear();
    state.trouble = false;
    if (total.sectorsKnown > 0)
        state.remark = unreadSectorsText(total);
    if (const auto whole = wholeQuality(total))
        state.remark += "; good and whole as far as known: " + percent(*whole);
    if (!state.knowsAll)
        state.remark = fmt::format(
            "There is no evidence beside {}: reasons, doubts, what was not read and the heads are not known.",
            shownScope().jobs.size() == 1 ? "this list" : "some of these lists");
}

void Overview::describeScope() {
    const Scope& scope = shownScope();
    state.job = scope.name;
    state.scopes = {scopes_.front().name};
    for (std::size_t i = 1; i < scopes_.size(); ++i)
        state.scopes.push_back(fmt::format("{} ({} jobs)", scopes_[i].name, scopes_[i].jobs.size()));
    std::string ids;
    for (const auto& job : scope.jobs) ids += (ids.empty() ? "" : ", ") + readable(std::string_view(job.id));
    const std::string source = source_->source();
    const std::string& path = folders_->root().facts.path;
    state.source = scope.jobs.size() > 1 ? ids : readable(std::string_view(source.empty() ? path : source));
}

std::optional<PlaceInCase> Overview::place() const {
    if (source_ == nullptr)
        return std::nullopt;
    const bool isRoot = state.folder == nullptr || state.folder->above == nullptr;
    return source_->placeOf(isRoot ? std::string_view() : std::string_view(state.folder->facts.path));
}

FileWish Overview::wish() const {
    FileWish wish = fileChoices()[static_cast<std::size_t>(state.choice)].wish;
    if (state.extension > 0)
        wish.extensions = {state.extensions[static_cast<std::size_t>(state.extension)].first};
    if (state.reason > 0) {
        const auto reason = reasonNamed(state.reasons[static_cast<std::size_t>(state.reason)].first);
        if (reason)
            wish.reasons = {*reason};
    }
    if (state.folder != nullptr && state.folder->above != nullptr)
        wish.below = state.folder->facts.path;
    return wish;
}

// Empty where nothing is chosen.
std::string Overview::filterText(bool withGrade) const {
    std::string text;
    const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : " · ") + part; };
    if (state.folder != nullptr && state.folder->above != nullptr)
        add("below " + readable(std::string_view(state.folder->facts.path)));
    if (state.extension > 0) {
        const auto& name = state.extensions[static_cast<std::size_t>(state.extension)].first;
        add(name.empty() ? "without extension" : "." + readable(std::string_view(name)));
    }
    if (state.reason > 0)
        add(state.reasons[static_cast<std::size_t>(state.reason)].first);
    const FileChoice& files = fileChoices()[static_cast<std::size_t>(state.choice)];
    if (state.choice > 0 && (withGrade || files.wish.grades.empty()))
        add(files.caption);
    return text;
}

void Overview::describeFilter() {
    const std::string text = filterText(true);
    const bool isCase = state.isOpen && shownScope().jobs.size() > 1;
    state.filter = !text.empty() ? text : isCase ? "All files of the case" : "All files of the job";
    const auto one = place();
    state.hasOneJob = one.has_value();
    state.isInOwnJob = one && (!isCase || shownScope().jobs[one->job].id == scopes_.front().jobs.front().id);
}

void Overview::describeRows() {
    const auto found = grouped(static_cast<std::int64_t>(rows.ids().size()));
    state.matching = isSearching() ? found + " files so far ..." : found + " files";
}

// The rows of what is chosen now; the first piece at once.
void Overview::find() {
    search_.reset();
    rows.showFiles(source_.get());
    selectRow(-1);
    describeFilter();
    if (source_ == nullptr)
        return;
    auto search = source_->search(wish());
    if (!search) {
        tell(search.error());
        return;
    }
    search_ = std::move(*search);
    passOver(searchOn(), "the screen asks for more");
}

bool Overview::searchOn() {
    if (search_ == nullptr)
        return false;
    const auto more = search_->more(rows.ids());
    if (!more)
        tell(more.error());
    if (!more || !*more)
        search_.reset();
    describeRows();
    return isSearching();
}

void Overview::chooseFolder(FolderNode& folder) {
    state.folder = &folder;
    find();
}

void Overview::chooseExtension(int entry) {
    state.extension = entryOf(entry, state.extensions);
    find();
}

void Overview::chooseReason(int entry) {
    state.reason = entryOf(entry, state.reasons);
    find();
}

void Overview::chooseFiles(int entry) {
    state.choice = std::clamp(entry, 0, static_cast<int>(fileChoices().size()) - 1);
    find();
}

void Overview::showAll() {
    state.extension = state.reason = state.choice = 0;
    if (folders_) {
        state.folder = &folders_->root();
        moveMap(folders_->root());
    }
    find();
}

void Overview::chooseArea(MapArea area) {
    state.area = area;
    arrangeMap();
}

void Overview::moveMap(FolderNode& folder) {
    if (const auto loaded = folders_->load(folder); !loaded)
        tell(loaded.error());
    state.mapRoot = &folder;
    arrangeMap();
}

void Overview::arrangeMap() {
    state.tiles = state.mapRoot == nullptr ? std::vector<MapTile>() : tilesOf(*state.mapRoot, state.area);
    ++state.contents;
}

void Overview::chooseTile(int tile) {
    if (tile < 0 || tile >= static_cast<int>(state.tiles.size()))
        return;
    FolderNode* const folder = state.tiles[static_cast<std::size_t>(tile)].folder;
    chooseFolder(folder != nullptr ? *folder : *state.mapRoot);
}

void Overview::walkInto(int tile) {
    if (tile < 0 || tile >= static_cast<int>(state.tiles.size()))
        return;
    FolderNode* const folder = state.tiles[static_cast<std::size_t>(tile)].folder;
    if (folder == nullptr)
        return;
    moveMap(*folder);
    chooseFolder(*folder);
}

void Overview::walkOut() {
    if (state.mapRoot == nullptr || state.mapRoot->above == nullptr)
        return;
    FolderNode& above = *state.mapRoot->above;
    moveMap(above);
    chooseFolder(above);
}

void Overview::selectRow(int row) {
    state.currentRow = row;
    state.head.clear();
    state.headText.clear();
    if (row < 0)
        return;
    const auto file = rows.file(row);
    if (!file) {
        state.headText = rows.areChanges() ? "Heads are shown for the files of this job alone" : "";
        return;
    }
    const auto head = source_->head(*file);
    const std::string name = readable(std::string_view(file->name));
    if (!head)
        state.headText = head.error().text;
    else if (!*head)
        state.headText = name + ": no head is kept of it";
    else if ((*head)->empty())
        state.headText = name + ": nothing of it could be read";
    else
        state.headText = fmt::format("{}: its first {} bytes", name, (*head)->size());
    if (head && *head)
        state.head = **head;
}

ViewerHandover Overview::forViewer() {
    ViewerHandover handover;
    const FileWish chosen = wish();
    const auto current = rows.file(state.currentRow);
    if (!chosen.grades.empty())
        handover.grade = chosen.grades.front();
    else if (current && current->grade)
        handover.grade = *current->grade;
    if (handover.grade == Grade::Good)  // the viewer has no entry for good files
        handover.grade = Grade::Corrupt;
    if (!chosen.extensions.empty())
        handover.extension = chosen.extensions.front();
    else if (current)
        handover.extension = current->extension;
    return handover;
}

}  // namespace quillon
