// SPDX-License-Identifier: MIT
#include "job/folder_tree.h"

#include <string>
#include <vector>

namespace quillon {

namespace {

// Handles of folders further up are closed and opened again when the visit comes back to them: from the folder below,
// so that the depth of a tree costs nothing, or by path.
constexpr std::size_t kOpenLevels = 64;

struct Level {
    Directory handle;
    EntryNames folders;
    std::size_t next = 0;
    std::size_t pathLength = 0;
    std::uint64_t inode = 0;  // of a handle that was closed, to know the folder again
};

class Visit {
public:
    explicit Visit(FolderVisitor& visitor) : visitor_(visitor) {}

    void run(Directory root, const NativePath& rootPath) {
        path_ = rootPath.native();
        if (path_.empty() || path_.back() != '/')
            path_.push_back('/');
        if (!enter(std::move(root)))
            return;
        while (!levels_.empty()) {
            Level& level = levels_.back();
            path_.resize(level.pathLength);
            if (level.next == level.folders.size()) {
                const Level done = std::move(level);
                levels_.pop_back();
                if (!levels_.empty() && !levels_.back().handle.isOpen() && done.handle.isOpen())
                    passOver(openAgain(levels_.back(), done.handle.openFolder("..")), "it is then opened by its path");
            } else if (!descend(level)) {
                return;
            }
        }
    }

private:
    // Lists the folder that path_ names, delivers its files and puts its subfolders on the stack. False ends the visit.
    bool enter(Directory handle) {
        if (visitor_.cancelled())
            return false;
        Level level;
        const Pause pause = [this] { visitor_.listing(); };
        if (!handle.list(files_, level.folders, pause))
            visitor_.notListed(path_);
        visitor_.met(path_, files_.size());
        level.folders.sort(pause);
        if (!deliverFiles(handle, pause))
            return false;
        if (files_.size() > kLargeFolder)
            files_.release();
        if (level.folders.empty())
            return true;
        level.handle = std::move(handle);
        level.pathLength = path_.size();
        if (levels_.size() >= kOpenLevels)
            closeForNow(levels_[levels_.size() - kOpenLevels]);
        levels_.push_back(std::move(level));
        return true;
    }

    [[nodiscard]] bool deliverFiles(const Directory& handle, const Pause& pause) {
        if (files_.empty() || !visitor_.wantsFiles(path_))
            return true;
        files_.sort(pause);
        return visitor_.files(handle, path_, files_);
    }

    bool descend(Level& level) {
        if (!level.handle.isOpen() && !openAgain(level, Directory::open(NativePath(path_)))) {
            visitor_.notListed(path_);
            level.next = level.folders.size();
            return true;
        }
        const std::string_view name = level.folders[level.next++];
        auto opened = level.handle.openFolder(name);
        path_.append(name).push_back('/');
        if (!opened) {
            const auto inside = level.handle.lookUpFolder(name);
            visitor_.subfolder(path_, inside && inside->canBeEntered());
            if (opened.error().kind != ErrorKind::NotFound)
                visitor_.notListed(path_);
            return true;
        }
        visitor_.subfolder(path_, opened->canBeEntered());
        return enter(std::move(*opened));
    }

    static void closeForNow(Level& level) {
        const auto stamp = level.handle.stamp();
        level.inode = stamp ? stamp->inode : 0;
        level.handle.close();
    }

    // The way back may lead elsewhere by now, out of the source too: only the very same folder is gone on with.
    [[nodiscard]] static bool openAgain(Level& level, Result<Directory> opened) {
        if (!opened)
            return false;
        const auto stamp = opened->stamp();
        if (!stamp || stamp->inode != level.inode)
            return false;
        level.handle = std::move(*opened);
        return true;
    }

    static constexpr std::size_t kLargeFolder = 20000;

    FolderVisitor& visitor_;
    std::string path_;
    EntryNames files_;
    std::vector<Level> levels_;
};

}  // namespace

Result<void> visitFolders(const NativePath& root, FolderVisitor& visitor) {
    auto opened = Directory::open(root);
    if (!opened)
        return failure(opened.error());
    Visit(visitor).run(std::move(*opened), root);
    return {};
}

}  // namespace quillon
