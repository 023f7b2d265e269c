// SPDX-License-Identifier: MIT
#include "answers/overview/list_overview.h"

#include <algorithm>

namespace quillon {

namespace {

// So many rows are looked at in one piece, which takes some milliseconds.
constexpr std::size_t kRowsInPiece = 100'000;

}  // namespace

// Goes over the files in the order of the list.
class ListSearch final : public FileSearch {
public:
    ListSearch(const ListOverview& list, FileWish wish) : list_(list), wish_(std::move(wish)) {
        for (const auto& folder : list_.folders_) {
            EvidenceRow row;
            row.folder = folder.path;
            FileWish branch;
            branch.below = wish_.below;
            wanted_.push_back(fits(branch, row));
        }
        wish_.below.clear();
    }

    [[nodiscard]] Result<bool> more(std::vector<std::int64_t>& ids) override {
        const std::size_t end = std::min(next_ + kRowsInPiece, list_.files_.size());
        EvidenceRow row;
        for (; next_ < end; ++next_) {
            const auto& file = list_.files_[next_];
            if (!wanted_[file.folder])
                continue;
            row.grade = file.grade;
            row.extension = list_.extensions_[file.extension].name;
            if (fits(wish_, row))
                ids.push_back(static_cast<std::int64_t>(next_) + 1);
        }
        return next_ < list_.files_.size();
    }

private:
    const ListOverview& list_;
    FileWish wish_;
    std::vector<bool> wanted_;  // by folder
    std::size_t next_ = 0;
};

Result<std::unique_ptr<OverviewSource>> ListOverview::read(JobAnswers& list) {
    std::unique_ptr<ListOverview> overview(new ListOverview);
    const auto read = eachFile(list, [&overview](const EvidenceRow& file) -> Result<void> {
        overview->add(file);
        return {};
    });
    if (!read)
        return failure(read.error());
    overview->sumUp();
    return overview;
}

std::size_t ListOverview::folderOf(const std::string& path) {
    if (path.empty())
        return 0;
    if (const auto found = folderNumbers_.find(path); found != folderNumbers_.end())
        return found->second;
    const auto slash = path.rfind('/');
    const std::size_t parent = folderOf(path.substr(0, slash == path.npos ? 0 : slash));
    const std::size_t number = folders_.size();
    folders_.push_back({path, parent, {}, {}});
    folders_[parent].children.push_back(number);
    folderNumbers_.emplace(path, number);
    return number;
}

std::size_t ListOverview::extensionOf(const std::string& name) {
    const auto [found, isNew] = extensionNumbers_.emplace(name, extensions_.size());
    if (isNew)
        extensions_.push_back({name, {}});
    return found->second;
}

void ListOverview::add(const EvidenceRow& file) {
    const std::size_t folder = folderOf(file.folder);
    const std::size_t extension = extensionOf(file.extension);
    const FileSign sign{file.grade, {}, file.size, false};
    count(folders_[folder].figures, sign);
    count(extensions_[extension].figures, sign);
    files_.push_back({names_.size(), file.size, static_cast<std::uint32_t>(folder),
                      static_cast<std::uint32_t>(extension), static_cast<std::uint32_t>(file.row.value_or(0)),
                      file.grade});
    names_ += file.name;
}

void ListOverview::sumUp() {
    for (std::size_t i = folders_.size(); i-- > 1;) folders_[folders_[i].parent].figures += folders_[i].figures;
}

std::string_view ListOverview::nameOf(std::size_t file) const {
    const std::uint64_t begin = files_[file].name;
    const std::uint64_t end = file + 1 < files_.size() ? files_[file + 1].name : names_.size();
    return std::string_view(names_).substr(begin, end - begin);
}

FolderFacts ListOverview::factsOf(std::size_t folder) const {
    const Folder& known = folders_[folder];
    return {static_cast<std::int64_t>(folder),
            known.path.substr(known.path.rfind('/') + 1),
            known.path,
            {},
            !known.children.empty(),
            known.figures};
}

Result<FigureRows> ListOverview::extensions() {
    FigureRows rows;
    for (const auto& [name, figures] : extensions_) rows.emplace_back(name, figures);
    std::ranges::sort(rows, {}, [](const auto& row) { return std::pair(-row.second.files, row.first); });
    return rows;
}

// The folder that all files lie below: what leads there says nothing.
Result<FolderFacts> ListOverview::root() {
    std::size_t root = 0;
    while (folders_[root].children.size() == 1 &&
           folders_[folders_[root].children.front()].figures.files == folders_[root].figures.files)
        root = folders_[root].children.front();
    return factsOf(root);
}

Result<FolderList> ListOverview::folders(const FolderFacts& parent) {
    FolderList list;
    std::vector<std::size_t> children = folders_[static_cast<std::size_t>(parent.id)].children;
    if (children.size() > kMostFolders) {
        const auto files = [this](std::size_t folder) { return folders_[folder].figures.files; };
        std::ranges::stable_sort(children, std::ranges::greater(), files);
        list.others = static_cast<std::int64_t>(children.size() - kMostFolders);
        children.resize(kMostFolders);
    }
    for (const std::size_t child : children) list.folders.push_back(factsOf(child));
    std::ranges::sort(list.folders, {}, &FolderFacts::name);
    return list;
}

Result<std::unique_ptr<FileSearch>> ListOverview::search(const FileWish& wish) {
    return std::make_unique<ListSearch>(*this, wish);
}

Result<EvidenceRow> ListOverview::file(std::int64_t id) {
    const auto at = static_cast<std::size_t>(id - 1);
    if (id < 1 || at >= files_.size())
        return failure(ErrorKind::NotFound, "the list has no such file");
    const File& known = files_[at];
    EvidenceRow row;
    row.id = id;
    row.row = known.row;
    row.folder = folders_[known.folder].path;
    row.name = nameOf(at);
    row.extension = extensions_[known.extension].name;
    row.size = known.size;
    row.grade = known.grade;
    return row;
}

}  // namespace quillon
