// SPDX-License-Identifier: MIT
#pragma once

// Copies of many files to places below a target, as jobs and commands make them: folders are made on the way, what
// would lie in the source is refused, and each copy is told when it has come to its end.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "ahead/copies_ahead.h"
#include "ahead/copy_settling.h"
#include "ahead/ring.h"
#include "app/event_loop.h"

namespace quillon {

/// The target file of a source path: the target folder, which ends in "/", and the path without the separators it
/// begins with. No value for a path that would lead out of the target.
[[nodiscard]] std::optional<std::string> copyTarget(const std::string& targetFolder, std::string_view source);

/// A folder with one "/" behind it.
[[nodiscard]] std::string withOneSlash(std::string folder);

/// A file to be copied.
struct CopyTask {
    std::int64_t number = 0;  ///< the asker's own
    std::string source;
    std::optional<std::string> target;  ///< none for a path that leads out of the target
};

class CopyQueue {
public:
    /// Hears what became of each file, on the asker's thread: some time behind its turn.
    using Ended = std::function<void(const SettledCopy&)>;

    /// `source` (empty where it is not known) is never written to, nor the folder that a file comes from. Of a source
    /// that `sourceCare` is taken of nothing is read ahead of its turn; null for none. All must outlive this.
    CopyQueue(EventLoop& loop, const NativePath& source, const CopyCare& care, Ended ended,
              std::shared_ptr<SourceCare> sourceCare = nullptr);

    /// True when it is time to ask for more: some tasks at once, since to wake a thread for each would cost more than
    /// it does.
    [[nodiscard]] bool wantsTasks() const { return tasks_.count() <= CopiesAhead::kMost / 2; }
    [[nodiscard]] bool hasRoom() const { return tasks_.count() < CopiesAhead::kMost; }
    [[nodiscard]] bool empty() const { return tasks_.count() == 0; }

    /// Asks for a copy; there must be room.
    void ask(CopyTask task);
    [[nodiscard]] const CopyTask& first() { return tasks_.first().task; }

    /// The turn of the first task, turning the loop while it has to be waited for.
    void finishFirst(const CopyProgress& progress);

    /// Forgets the tasks whose turn has not come, and brings all others to their end.
    void finish();

private:
    struct Asked {
        CopyTask task;
        std::optional<CopyError> refused;  // else its copy is asked for
    };

    [[nodiscard]] std::optional<CopyError> refusalOf(const CopyTask& task);
    [[nodiscard]] bool prepareFolder(const CopyTask& task);
    [[nodiscard]] bool liesInSource(const NativePath& folder, const NativePath& ofSource) const;
    template <typename Done>
    void waitFor(Done done);
    template <typename Done>
    void waitForDisk(Done done);
    void tellEnded();
    void noteFolderTimes(NativePath target, NativePath source);
    void setFolderTimes();

    EventLoop& loop_;
    NativePath realSource_;  // behind all links; empty for none
    Ended ended_;
    const bool keepsFolderTimes_;
    std::unordered_map<std::string, FileTime> folderTimes_;  // of folders of the target, set when all is in them
    std::string lastFolder_;
    bool lastFolderRefused_ = false;
    Ring<Asked> tasks_{CopiesAhead::kMost};
    CopiesAhead copies_;
    CopySettling settling_;
};

}  // namespace quillon
