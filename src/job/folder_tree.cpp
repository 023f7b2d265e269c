// SPDX-License-Identifier: MIT
#include "job/folder_tree.h"

#include <string>
#include <vector>

namespace quillon {

namespace {

// Handles of folders further up are closed and opened again when the visit comes back to them: from the folder below,
// so that the depth of a tree costs nothing, or by path.
constexpr std::size_t kOpenLevels = 64;
// Of a folder that is not come to yet, so many pieces of files are asked for.
constexpr std::size_t kPiecesAhead = 8;

using FolderTask = std::shared_ptr<AskedFolder>;

void askForFiles(SourceAsker& asker, AskedFolder& asked, std::size_t pieces) {
    const std::size_t size = asked.folder->files.size();
    while (asked.files.size() < pieces && asked.filesAsked < size) {
        const std::size_t count = std::min(filesAtOnce(!asker.isQuick()), size - asked.filesAsked);
        asked.files.push_back(std::make_shared<AskedFiles>(asked.folder, asked.filesAsked, count));
        asked.filesAsked += count;
        if (asker.asksAhead())
            asker.ask(asked.files.back());
    }
}

// The files of the folder that the visit has come to.
class FilesOfVisit final : public FolderFiles {
public:
    FilesOfVisit(SourceAsker& asker, FolderVisitor& visitor, AskedFolder& asked, std::string_view path)
        : asker_(asker), visitor_(visitor), asked_(asked), folder_(*asked.folder), path_(path) {}

    [[nodiscard]] bool gaveUp() const { return gaveUp_; }

    const FoundFile* next() override {
        const FileAnswer* const answer = at_ < folder_.files.size() ? answerOfNext() : nullptr;
        if (answer == nullptr)
            return nullptr;
        found_.emplace(FoundFile{folder_.files[at_++], folder_.handle, *answer});
        return &*found_;
    }

private:
    [[nodiscard]] const FileAnswer* answerOfNext() {
        while (!asked_.files.empty() && asked_.files.front()->first + asked_.files.front()->count <= at_)
            asked_.files.pop_front();
        if (asked_.files.empty() && asker_.mayDoInLine())
            return answerInLine();
        askForFiles(asker_, asked_, asker_.asksAhead() ? SourceAsker::kMost : 1);
        const std::shared_ptr<AskedFiles> piece = asked_.files.front();
        if (!piece->isAtHand && !arrives(piece))
            return nullptr;
        return &piece->answers[at_ - piece->first];
    }

    [[nodiscard]] const FileAnswer* answerInLine() {
        inLine_ = describeFile(folder_, folder_.files[at_], asker_.care());
        asker_.was(!inLine_.wasSlow);
        asked_.filesAsked = at_ + 1;
        return &inLine_;
    }

    [[nodiscard]] bool arrives(const std::shared_ptr<AskedFiles>& piece) {
        gaveUp_ = !asker_.isAtHand(*piece) && !visitor_.awaits(path_, [&](std::chrono::milliseconds limit) {
            return asker_.arrives(piece, limit);
        });
        return !gaveUp_;
    }

    SourceAsker& asker_;
    FolderVisitor& visitor_;
    AskedFolder& asked_;
    const OpenFolder& folder_;
    std::string_view path_;
    std::size_t at_ = 0;
    FileAnswer inLine_;
    std::optional<FoundFile> found_;
    bool gaveUp_ = false;
};

struct Level {
    FolderTask asked;
    std::size_t next = 0;
    std::size_t pathLength = 0;
    std::uint64_t inode = 0;  // of a handle that was closed, to know the folder again

    [[nodiscard]] Directory& handle() const { return asked->folder->handle; }
    [[nodiscard]] const EntryNames& folders() const { return asked->folder->folders; }
};

class Visit {
public:
    Visit(FolderVisitor& visitor, SourceAsker& asker) : visitor_(visitor), asker_(asker) {}

    Result<void> run(const NativePath& rootPath) {
        path_ = rootPath.native();
        const bool endsRight = path_.ends_with('/');
        const bool wanted = visitor_.wantsFiles(endsRight ? path_ : path_ + '/');
        const auto root = std::make_shared<AskedFolder>(nullptr, path_, wanted);
        if (!comes(root))
            return {};
        if (root->folder == nullptr)
            return failure(ErrorKind::PathAccess, path_);
        if (!endsRight)
            path_.push_back('/');
        if (enter(root))
            visitSubfolders();
        return {};
    }

private:
    void visitSubfolders() {
        while (!levels_.empty()) {
            Level& level = levels_.back();
            path_.resize(level.pathLength);
            if (level.next == level.folders().size())
                leave();
            else if (!descend(level))
                return;
        }
    }

    void leave() {
        const Level done = std::move(levels_.back());
        levels_.pop_back();
        if (!levels_.empty() && !levels_.back().handle().isOpen() && done.handle().isOpen())
            passOver(openAgain(levels_.back(), done.handle().openFolder("..")), "it is then opened by its path");
    }

    // Waits until the folder is open, or cannot be. False ends the visit.
    [[nodiscard]] bool comes(const FolderTask& asked) {
        if (asker_.isAtHand(*asked))
            return true;
        if (!asked->isAsked && asker_.mayDoInLine()) {
            asked->open(asker_.care());
            return true;
        }
        return visitor_.awaits(path_, [&](std::chrono::milliseconds limit) { return asker_.arrives(asked, limit); });
    }

    // Lists the folder that path_ names, delivers its files and puts its subfolders on the stack. False ends the visit.
    bool enter(const FolderTask& asked) {
        if (visitor_.cancelled())
            return false;
        if (!asked->isAtHand) {
            asked->list(asker_.care(), [this] { visitor_.listing(); });
            asker_.was(!asked->wasSlow);
        }
        if (!asked->listedToItsEnd)
            visitor_.notListed(path_);
        visitor_.met(path_, asked->filesMet);
        if (!asked->folder->folders.empty())
            push(asked);
        askAhead();
        if (!deliverFiles(*asked))
            return false;
        asked->folder->files.release();
        return true;
    }

    void push(const FolderTask& asked) {
        if (levels_.size() >= kOpenLevels)
            closeForNow(levels_[levels_.size() - kOpenLevels]);
        levels_.push_back({asked, 0, path_.size()});
    }

    [[nodiscard]] bool deliverFiles(AskedFolder& asked) {
        if (asked.folder->files.empty() || !visitor_.wantsFiles(path_))
            return true;
        FilesOfVisit files(asker_, visitor_, asked, path_);
        return visitor_.files(path_, files) && !files.gaveUp();
    }

    bool descend(Level& level) {
        auto& ahead = level.asked->subfolders;
        if (ahead.empty() && !level.handle().isOpen() && !openAgain(level, Directory::open(NativePath(path_)))) {
            visitor_.notListed(path_);
            level.next = level.folders().size();
            return true;
        }
        if (ahead.empty())
            ahead.push_back(subfolder(*level.asked, path_, level.next));
        const FolderTask asked = std::move(ahead.front());
        ahead.pop_front();
        ++level.next;
        path_.append(asked->name).push_back('/');
        if (!comes(asked))
            return false;
        visitor_.subfolder(path_, asked->canBeEntered);
        if (asked->folder != nullptr)
            return enter(asked);
        if (!asked->hasGone)
            visitor_.notListed(path_);
        return true;
    }

    // `path`: of the folder above, ends in "/".
    [[nodiscard]] FolderTask subfolder(const AskedFolder& asked, const std::string& path, std::size_t index) const {
        std::string name(asked.folder->folders[index]);
        const bool wanted = visitor_.wantsFiles(path + name + '/');
        return std::make_shared<AskedFolder>(asked.folder, std::move(name), wanted);
    }

    // Asks for the folders that the visit comes to next, in its order.
    void askAhead() {
        if (!asker_.asksAhead())
            return;
        std::size_t left = SourceAsker::kMost;
        for (auto level = levels_.rbegin(); level != levels_.rend() && left > 0; ++level)
            if (level->handle().isOpen())
                askBelow(*level->asked, path_.substr(0, level->pathLength), level->next, left);
    }

    void askBelow(AskedFolder& asked, const std::string& path, std::size_t next, std::size_t& left) {
        for (std::size_t i = 0; next + i < asked.folder->folders.size() && left > 0; ++i) {
            --left;
            if (i == asked.subfolders.size())
                asked.subfolders.push_back(subfolder(asked, path, next + i));
            const FolderTask below = asked.subfolders[i];
            asker_.ask(below);
            if (!asker_.isAtHand(*below) || below->folder == nullptr)
                continue;
            askForFiles(asker_, *below, kPiecesAhead);
            askBelow(*below, path + below->name + '/', 0, left);
        }
    }

    // Threads may be at work in the folder: the handle closes when the last of them has done.
    static void closeForNow(Level& level) {
        const auto stamp = level.handle().stamp();
        level.inode = stamp ? stamp->inode : 0;
        auto closed = std::make_shared<OpenFolder>();
        closed->folders = std::move(level.asked->folder->folders);
        level.asked->folder = std::move(closed);
    }

    // The way back may lead elsewhere by now, out of the source too: only the very same folder is gone on with.
    [[nodiscard]] static bool openAgain(Level& level, Result<Directory> opened) {
        if (!opened)
            return false;
        const auto stamp = opened->stamp();
        if (!stamp || stamp->inode != level.inode)
            return false;
        level.handle() = std::move(*opened);
        return true;
    }

    FolderVisitor& visitor_;
    SourceAsker& asker_;
    std::string path_;
    std::vector<Level> levels_;
};

}  // namespace

Result<void> visitFolders(const NativePath& root, FolderVisitor& visitor, SourceAsker& asker) {
    return Visit(visitor, asker).run(root);
}

}  // namespace quillon
