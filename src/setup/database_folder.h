// SPDX-License-Identifier: MIT
#pragma once

// The files of a database folder by their names without regard to case: the systems that share the folder differ in
// whether "JPG.DAT" and "jpg.dat" are one file, and here they are.

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/file.h"

namespace quillon {

/// The names of all files of a database folder, sorted; empty when the folder cannot be listed. Their number is what
/// the questions of the job's start go by.
[[nodiscard]] std::vector<std::string> databaseFiles(const NativePath& folder);

/// What a database folder held when this was made.
class DatabaseFolder {
public:
    explicit DatabaseFolder(const NativePath& folder) : DatabaseFolder(folder, databaseFiles(folder)) {}
    DatabaseFolder(NativePath folder, const std::vector<std::string>& names);

    /// True when there is a file of this name in any case.
    [[nodiscard]] bool contains(std::string_view name) const;
    /// The file of this name in any case: of several the one in lower case, else the first. A name that is not there
    /// gets its place in lower case.
    [[nodiscard]] NativePath pathOf(std::string_view name) const;

private:
    NativePath folder_;
    std::unordered_map<std::string, std::string> names_;  // by their folded form
};

}  // namespace quillon
