// SPDX-License-Identifier: MIT
#pragma once

// Judges the names in an archive and gives each file its place below the target folder. For the sources of this folder
// only.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/result.h"

namespace quillon {

/// The parts of an entry's name, from the first folder to the file; the trailing "/" of a folder is dropped. A name
/// that could lead out of the target folder or is none is a BadName failure.
[[nodiscard]] Result<std::vector<std::string>> entryParts(std::string_view name);

/// The parts in the spelling that the program's paths have: "DATABASE/JPG.DAT" -> "Database", "jpg.dat" and
/// "settings/skiplist.dat" -> "Settings", "SkipList.dat".
[[nodiscard]] std::vector<std::string> canonicalParts(std::vector<std::string> parts);

/// The spelling of a file of a Settings folder; a name that is none of the program's stays as it is.
[[nodiscard]] std::string settingsSpelling(std::string_view name);

/// Remembers the places that were given and refuses a second file in one of them, without regard to case.
class TakenPlaces {
public:
    [[nodiscard]] Result<void> take(const std::vector<std::string>& parts, bool folder);

private:
    enum class Kind { File, Folder };
    std::unordered_map<std::string, Kind> taken_;
};

}  // namespace quillon
