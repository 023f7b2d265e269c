// SPDX-License-Identifier: MIT
#include "platform/file_batch.h"

#include <set>

#include <fcntl.h>
#include <unistd.h>

#include "platform/folders.h"
#include "platform/system_error.h"

namespace quillon {

namespace {

Result<void> syncVolumeOf(const NativePath& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return failure(systemError(folder.native()));
    const bool synced = ::syncfs(descriptor) == 0;
    const auto error = systemError(folder.native());
    ::close(descriptor);
    if (!synced)
        return failure(error);
    return {};
}

}  // namespace

FileBatch::~FileBatch() {
    for (const auto& file : waiting_) ::unlink(file.temporary.c_str());
}

Result<void> FileBatch::add(const NativePath& path, std::string_view bytes, const NativePath& temporaryFolder) {
    auto file = File::createNew(temporaryFolder / temporaryName());
    if (!file)
        return failure(file.error());
    waiting_.push_back({file->path(), path});
    return file->write(bytes).and_then([&file] { return file->close(); });
}

Result<void> FileBatch::commit() {
    if (waiting_.empty())
        return {};
    if (auto synced = syncVolumeOf(waiting_.front().temporary.parent_path()); !synced)
        return synced;
    std::set<NativePath> folders;
    while (!waiting_.empty()) {
        const Waiting& file = waiting_.back();
        if (auto renamed = renameFile(file.temporary, file.path); !renamed)
            return renamed;
        folders.insert(file.path.parent_path());
        waiting_.pop_back();
    }
    for (const auto& folder : folders) syncFolder(folder);
    return {};
}

}  // namespace quillon
