// SPDX-License-Identifier: MIT
#pragma once

// How the editors find and replace a rule list or term file without losing what nobody has seen.

#include <string>
#include <string_view>
#include <vector>

#include "app/kept_files.h"

namespace quillon {

/// Writes the files of one list. What stands in a file and never was on the screen (the list of another workstation,
/// lines that the editor cannot show) goes under Kept before it is overwritten.
class ListSaver {
public:
    /// `kept` must outlive this.
    explicit ListSaver(KeptFiles& kept) : kept_(kept) {}

    /// A list was loaded: its content as the screen would write it. Older contents are forgotten.
    void loaded(std::string bytes) { seen_ = {std::move(bytes)}; }
    /// Nothing of a file is on the screen any more: whatever it holds is kept.
    void forget() { seen_.clear(); }
    /// What stands in these bytes is in the list by now: to overwrite them loses nothing.
    void takenIn(std::string bytes) { seen_.push_back(std::move(bytes)); }

    /// Replaces the file's content, which has been on the screen from now on. A file that cannot be read was not seen
    /// either: it is moved. When unseen bytes cannot be kept, nothing is written. An empty path is a NotFound failure.
    /// `through` is the folder of a lock that is held for it (platform/lease), if there is one.
    [[nodiscard]] Result<void> save(const NativePath& file, const std::string& bytes, const NativePath& through = {});

private:
    KeptFiles& kept_;
    std::vector<std::string> seen_;
};

}  // namespace quillon
