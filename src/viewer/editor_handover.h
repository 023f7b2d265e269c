// SPDX-License-Identifier: MIT
#pragma once

// What the viewer gives the Extension Editor when it opens it.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/source_files.h"

namespace quillon {

/// The first bytes of a file (path as list text) as its job has read them; none where they were not kept.
using KeptHeads = std::function<std::optional<FileHead>(std::u16string_view path)>;

struct EditorHandover {
    /// One row of the viewer's grid that has the extension, in the grid's order. List text.
    struct File {
        std::u16string path;
        std::u16string problem;  ///< the column "Problem!"; empty unless the category is the common header
    };

    int category = 0;          ///< entry of `Combo1`
    std::u16string extension;  ///< text of `Combo2`: lower case, list text
    std::vector<File> files;
    KeptHeads keptHead;  ///< empty unless the source of the files is away
    /// Called when the editor ends, behind the viewer's return to the screen. May be empty.
    std::function<void()> whenDone;
    std::string job = {};  ///< the ID of the job that was viewed
};

}  // namespace quillon
