// SPDX-License-Identifier: MIT
#include "job/folder_tree.h"

#include <string>
#include <vector>

namespace quillon {

namespace {

// Handles of folders further up are closed and opened again by path when the visit comes back to them.
constexpr std::size_t kOpenLevels = 64;

struct Level {
    Directory handle;
    EntryNames folders;
    std::size_t next = 0;
    std::size_t pathLength = 0;
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
                levels_.pop_back();
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
        if (!handle.list(files_, level.folders))
            visitor_.notListed(path_);
        files_.sort();
        level.folders.sort();
        if (!files_.empty() && !visitor_.files(handle, path_, files_))
            return false;
        if (files_.size() > kLargeFolder)
            files_.release();
        if (level.folders.empty())
            return true;
        level.handle = std::move(handle);
        level.pathLength = path_.size();
        if (levels_.size() >= kOpenLevels)
            levels_[levels_.size() - kOpenLevels].handle.close();
        levels_.push_back(std::move(level));
        return true;
    }

    bool descend(Level& level) {
        if (!level.handle.isOpen()) {
            auto opened = Directory::open(NativePath(path_));
            if (!opened) {
                visitor_.notListed(path_);
                level.next = level.folders.size();
                return true;
            }
            level.handle = std::move(*opened);
        }
        const std::string_view name = level.folders[level.next++];
        auto opened = level.handle.openFolder(name);
        path_.append(name).push_back('/');
        visitor_.subfolder(path_, opened && opened->canBeEntered());
        if (!opened) {
            return true;
        }
        return enter(std::move(*opened));
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
