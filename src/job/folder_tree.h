// SPDX-License-Identifier: MIT
#pragma once

// Goes through a source tree, depth first: the files of a folder by name, then its subfolders by name, in byte order,
// so that two runs give equal lists. Links are neither followed nor delivered. Depth and path length have no limit; few
// folder handles are open at any time.

#include <string_view>

#include "platform/directory.h"

namespace quillon {

/// Paths end in "/" and are good during the call only.
class FolderVisitor {
public:
    virtual ~FolderVisitor() = default;
    /// Asked before each folder; true ends the whole visit.
    [[nodiscard]] virtual bool cancelled() { return false; }
    /// A subfolder, before what is in it. The start folder is none. One may be entered and yet not be listed, and the
    /// other way round.
    virtual void subfolder(std::string_view /*path*/, bool /*canBeEntered*/) {}
    /// So many files of a folder have been met by their names; whether they are wanted or not.
    virtual void met(std::string_view /*path*/, std::size_t /*files*/) {}
    /// False spares the visit to sort and deliver the files of a folder.
    [[nodiscard]] virtual bool wantsFiles(std::string_view /*path*/) const { return true; }
    /// The files of a folder, sorted. False ends the whole visit.
    virtual bool files(const Directory& /*folder*/, std::string_view /*path*/, const EntryNames& /*names*/) {
        return true;
    }
    /// A very large folder is being listed; called for every few thousand entries, so that a screen stays alive.
    virtual void listing() {}
    /// A folder whose entries could not all be read, or not even be asked for. Those that could are delivered. A folder
    /// that has gone meanwhile is none.
    virtual void notListed(std::string_view /*path*/) {}
};

/// Visits `root`. A failure is one of opening `root` itself.
[[nodiscard]] Result<void> visitFolders(const NativePath& root, FolderVisitor& visitor);

}  // namespace quillon
