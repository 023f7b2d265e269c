// SPDX-License-Identifier: MIT
#include "platform/file_batch.h"

#include <set>

#include <fcntl.h>

#include "platform/disk_calls.h"
#include "platform/folders.h"
#include "platform/volume_syncs.h"

namespace quillon {

namespace {

bool syncVolumeOf(const NativePath& folder) {
    const int descriptor = disk().open(AT_FDCWD, folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (descriptor < 0)
        return false;
    const bool synced = syncWholeVolume(descriptor);
    passOver(disk().close(descriptor), "nothing was written by it");
    return synced;
}

}  // namespace

FileBatch::~FileBatch() {
    for (const auto& file : waiting_)
        passOver(disk().unlink(AT_FDCWD, file.temporary.c_str()), "a name that no listing gives");
}

Result<void> FileBatch::add(const NativePath& path, std::string_view bytes, const NativePath& temporaryFolder) {
    auto file = File::createNew(temporaryFolder / temporaryName());
    if (!file)
        return failure(saveError(path, file.error()));
    waiting_.push_back({file->path(), path});
    const auto written = file->write(bytes).and_then([&file] { return file->close(); });
    if (!written)
        return failure(saveError(path, written.error()));
    return {};
}

Result<void> FileBatch::sync() const {
    if (syncVolumeOf(waiting_.front().temporary.parent_path()))
        return {};
    for (const auto& file : waiting_) {
        if (auto synced = syncFile(file.temporary); !synced)
            return failure(saveError(file.path, synced.error()));
    }
    return {};
}

Result<void> FileBatch::commit(const std::function<void()>& named) {
    if (waiting_.empty())
        return {};
    if (auto synced = sync(); !synced)
        return synced;
    std::set<NativePath> folders;
    while (!waiting_.empty()) {
        const Waiting& file = waiting_.back();
        if (auto renamed = renameFile(file.temporary, file.path); !renamed)
            return failure(saveError(file.path, renamed.error()));
        folders.insert(file.path.parent_path());
        waiting_.pop_back();
        if (named)
            named();
    }
    for (const auto& folder : folders) syncFolder(folder);
    return {};
}

}  // namespace quillon
