// SPDX-License-Identifier: MIT
// Ids of a part are told as `own * number of parts + part`, folders as "<job ID>/<own folder>".
#include "answers/overview/case_overview.h"

#include <algorithm>
#include <limits>

namespace quillon {

namespace {

constexpr std::int64_t kRootId = -1;

}  // namespace

// One part after the other.
class CaseSearch final : public FileSearch {
public:
    CaseSearch(CaseOverview& all, FileWish wish, std::size_t first, std::size_t behind)
        : all_(all), wish_(std::move(wish)), part_(first), behind_(behind) {}

    [[nodiscard]] Result<bool> more(std::vector<std::int64_t>& ids) override {
        if (part_ == behind_)
            return false;
        if (search_ == nullptr) {
            auto begun = all_.parts_[part_].source->search(wish_);
            if (!begun)
                return failure(begun.error());
            search_ = std::move(*begun);
        }
        own_.clear();
        const auto more = search_->more(own_);
        if (!more)
            return failure(more.error());
        for (const auto own : own_) {
            const auto id = all_.idOf(part_, own);
            if (!id)
                return failure(id.error());
            ids.push_back(*id);
        }
        if (*more)
            return true;
        search_.reset();
        ++part_;
        return part_ != behind_;
    }

private:
    CaseOverview& all_;
    FileWish wish_;
    std::size_t part_;
    std::size_t behind_;
    std::unique_ptr<FileSearch> search_;
    std::vector<std::int64_t> own_;
};

// Paths of a list are whole ones: they begin with "/", which a folder's name does not.
Result<CaseOverview::Part> CaseOverview::openPart(const JobFiles& job, const ReportMessages& messages) {
    auto source = openOverview(job, messages);
    if (!source)
        return failure(source.error());
    auto root = (*source)->root();
    if (!root)
        return failure(root.error());
    Part part{job.id, std::move(*source), std::move(*root), {}};
    std::string first = part.root.path;
    if (first.empty() && part.source->hasWholePaths()) {
        const auto below = part.source->folders(part.root);
        if (!below)
            return failure(below.error());
        first = below->folders.empty() ? first : below->folders.front().path;
    }
    if (first.starts_with('/'))
        part.front = "/";
    return part;
}

Result<std::unique_ptr<OverviewSource>> CaseOverview::open(const std::vector<JobFiles>& jobs,
                                                           const ReportMessages& messages) {
    std::vector<Part> parts;
    for (const auto& job : jobs) {
        auto part = openPart(job, messages);
        if (!part)
            return failure(part.error());
        parts.push_back(std::move(*part));
    }
    return std::unique_ptr<OverviewSource>(new CaseOverview(std::move(parts)));
}

std::string CaseOverview::pathInCase(const Part& part, std::string_view own) {
    if (own.starts_with(part.front))
        own.remove_prefix(part.front.size());
    return own.empty() ? part.id : part.id + "/" + std::string(own);
}

std::optional<PlaceInCase> CaseOverview::placeOf(std::string_view folder) const {
    const std::string_view id = folder.substr(0, folder.find('/'));
    const auto found = std::ranges::find(parts_, id, &Part::id);
    if (folder.empty() || found == parts_.end())
        return std::nullopt;
    const auto job = static_cast<std::size_t>(found - parts_.begin());
    if (folder.size() == id.size())
        return PlaceInCase{job, {}};
    return PlaceInCase{job, found->front + std::string(folder.substr(id.size() + 1))};
}

bool CaseOverview::knowsAll() const {
    return std::ranges::all_of(parts_, [](const Part& part) { return part.source->knowsAll(); });
}

Result<std::int64_t> CaseOverview::idOf(std::size_t part, std::int64_t own) const {
    const auto parts = static_cast<std::int64_t>(parts_.size());
    if (own < 0 || own >= std::numeric_limits<std::int64_t>::max() / parts - 1)
        return failure(ErrorKind::PathAccess, "the evidence is damaged");
    return own * parts + static_cast<std::int64_t>(part);
}

std::pair<CaseOverview::Part&, std::int64_t> CaseOverview::ownOf(std::int64_t id) {
    const auto parts = static_cast<std::int64_t>(parts_.size());
    return {parts_[static_cast<std::size_t>(id % parts)], id / parts};
}

Result<Figures> CaseOverview::total() {
    Figures sum;
    for (auto& part : parts_) {
        const auto figures = part.source->total();
        if (!figures)
            return failure(figures.error());
        sum += *figures;
    }
    return sum;
}

Result<FigureRows> CaseOverview::sums(Result<FigureRows> (OverviewSource::*question)()) {
    FiguresBy sums;
    for (auto& part : parts_) {
        const auto rows = (part.source.get()->*question)();
        if (!rows)
            return failure(rows.error());
        for (const auto& [name, figures] : *rows) sums[name] += figures;
    }
    FigureRows rows(sums.begin(), sums.end());
    std::ranges::stable_sort(rows, std::ranges::greater(), [](const auto& row) { return row.second.files; });
    return rows;
}

Result<FigureRows> CaseOverview::extensions() {
    return sums(&OverviewSource::extensions);
}

Result<FigureRows> CaseOverview::reasons() {
    return sums(&OverviewSource::reasons);
}

Result<FolderFacts> CaseOverview::root() {
    FolderFacts root;
    root.id = kRootId;
    root.hasFolders = true;
    for (const auto& part : parts_) root.figures += part.root.figures;
    return root;
}

Result<FolderFacts> CaseOverview::shown(std::size_t part, FolderFacts facts) const {
    const auto id = idOf(part, facts.id);
    if (!id)
        return failure(id.error());
    facts.id = *id;
    facts.path = pathInCase(parts_[part], facts.path);
    return facts;
}

Result<FolderList> CaseOverview::jobs() const {
    FolderList list;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        FolderFacts job = parts_[i].root;
        job.name = parts_[i].id;
        job.path.clear();  // all of the job, whatever folder its files have in common
        auto facts = shown(i, std::move(job));
        if (!facts)
            return failure(facts.error());
        list.folders.push_back(std::move(*facts));
    }
    std::ranges::sort(list.folders, {}, &FolderFacts::name);
    return list;
}

Result<FolderList> CaseOverview::folders(const FolderFacts& parent) {
    if (parent.id == kRootId)
        return jobs();
    const auto place = placeOf(parent.path);
    if (!place)
        return failure(ErrorKind::NotFound, "the case has no such job");
    auto [part, id] = ownOf(parent.id);
    FolderFacts own = parent;
    own.id = id;
    own.path = id == part.root.id ? part.root.path : place->folder;
    auto found = part.source->folders(own);
    if (!found)
        return failure(found.error());
    FolderList list;
    list.others = found->others;
    for (auto& child : found->folders) {
        auto facts = shown(place->job, std::move(child));
        if (!facts)
            return failure(facts.error());
        list.folders.push_back(std::move(*facts));
    }
    return list;
}

Result<std::unique_ptr<FileSearch>> CaseOverview::search(const FileWish& wish) {
    if (wish.below.empty())
        return std::make_unique<CaseSearch>(*this, wish, 0, parts_.size());
    auto place = placeOf(wish.below);
    if (!place)
        return failure(ErrorKind::NotFound, "the case has no such job");
    FileWish own = wish;
    own.below = std::move(place->folder);
    return std::make_unique<CaseSearch>(*this, std::move(own), place->job, place->job + 1);
}

Result<EvidenceRow> CaseOverview::file(std::int64_t id) {
    auto [part, own] = ownOf(id);
    auto row = part.source->file(own);
    if (!row)
        return row;
    row->id = id;
    row->folder = pathInCase(part, row->folder);
    return row;
}

// The part knows its own row, for which the digest of its block stands.
Result<std::optional<std::string>> CaseOverview::head(const EvidenceRow& file) {
    auto [part, own] = ownOf(file.id);
    const auto row = part.source->file(own);
    if (!row)
        return failure(row.error());
    return part.source->head(*row);
}

}  // namespace quillon
