// SPDX-License-Identifier: MIT
#pragma once

// Goes through a source tree, depth first: the files of a folder by name, then its subfolders by name, in byte order,
// so that two runs give equal lists. Links are neither followed nor delivered. Depth and path length have no limit; few
// folder handles are open at any time. What a slow source has to be asked for is asked ahead, by threads, across
// folders; what is delivered, and in which order, stays the same.

#include <chrono>
#include <functional>
#include <string_view>

#include "ahead/source_asker.h"

namespace quillon {

/// A file of a folder, and what the file system says of it; good until the next one.
struct FoundFile {
    std::string_view name;
    const Directory& folder;
    const FileAnswer& answer;
};

/// The files of a folder, sorted by name.
class FolderFiles {
public:
    virtual ~FolderFiles() = default;
    /// Null behind the last one, or where the wait for one was given up.
    [[nodiscard]] virtual const FoundFile* next() = 0;
};

/// Paths end in "/" and are good during the call only.
class FolderVisitor {
public:
    using Arrives = std::function<bool(std::chrono::milliseconds limit)>;

    virtual ~FolderVisitor() = default;
    /// Asked before each folder; true ends the whole visit.
    [[nodiscard]] virtual bool cancelled() { return false; }
    /// A subfolder, before what is in it. The start folder is none. One may be entered and yet not be listed, and the
    /// other way round.
    virtual void subfolder(std::string_view /*path*/, bool /*canBeEntered*/) {}
    /// So many files of a folder have been met by their names; whether they are wanted or not.
    virtual void met(std::string_view /*path*/, std::size_t /*files*/) {}
    /// False spares the visit to sort, describe and deliver the files of a folder. `path` ends in "/".
    [[nodiscard]] virtual bool wantsFiles(std::string_view /*path*/) const { return true; }
    /// The files of a folder that has some. False ends the whole visit.
    virtual bool files(std::string_view /*path*/, FolderFiles& /*files*/) { return true; }
    /// A very large folder is being listed; called for every few thousand entries, so that a screen stays alive.
    virtual void listing() {}
    /// A folder whose entries could not all be read, or not even be asked for. Those that could are delivered. A folder
    /// that has gone meanwhile is none.
    virtual void notListed(std::string_view /*path*/) {}
    /// Something of this folder has to be waited for: until `arrives(limit)` is true, which itself waits no longer than
    /// `limit`. False ends the wait and the whole visit.
    [[nodiscard]] virtual bool awaits(std::string_view /*path*/, const Arrives& arrives) {
        while (!arrives(std::chrono::hours(1))) continue;
        return true;
    }
};

/// Visits `root`. A failure is one of opening `root` itself.
[[nodiscard]] Result<void> visitFolders(const NativePath& root, FolderVisitor& visitor, SourceAsker& asker);

}  // namespace quillon
