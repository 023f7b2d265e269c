// SPDX-License-Identifier: MIT
#pragma once

// Saves many new files with one wait for the medium instead of one for each: all bytes go into temporary files, the
// volume is synchronised (each file, where the volume cannot say that all is well), and then every file takes its name.
// A process that is killed, and a machine that dies, leave whole files and no cut one.

#include <functional>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/result.h"
#include "platform/whole_file.h"

namespace quillon {

class FileBatch {
public:
    FileBatch() = default;
    FileBatch(const FileBatch&) = delete;
    FileBatch& operator=(const FileBatch&) = delete;
    /// Removes what was added and not committed.
    ~FileBatch();

    /// Writes the bytes of a file that does not exist yet; it has its name after `commit`. The folder must exist.
    /// `temporaryFolder`: where the bytes wait, on the same volume as `path`.
    [[nodiscard]] Result<void> add(const NativePath& path, std::string_view bytes, const NativePath& temporaryFolder);

    /// Gives every file its name and calls `named` behind each. A failure leaves the files that had their turn.
    [[nodiscard]] Result<void> commit(const std::function<void()>& named = {});

    /// The files that wait for their names.
    [[nodiscard]] std::size_t size() const { return waiting_.size(); }

private:
    struct Waiting {
        NativePath temporary;
        NativePath path;
    };
    [[nodiscard]] Result<void> sync() const;

    std::vector<Waiting> waiting_;
};

}  // namespace quillon
