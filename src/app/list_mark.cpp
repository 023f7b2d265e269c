// SPDX-License-Identifier: MIT
#include "app/list_mark.h"

#include <cstdint>
#include <string>
#include <string_view>

#include <fmt/format.h>

#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::string_view kSuffix = ".unfinished";
// For a person who finds the mark in the folder.
constexpr std::string_view kText =
    "The file list of this name is not whole: its job still runs, or was cut short. Run the job again.\n";

// FNV-1a: the same number on every computer.
std::uint64_t hashOf(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return hash;
}

}  // namespace

// A name may be as long as the system allows, and then has no room for a suffix.
NativePath unfinishedMark(const NativePath& list) {
    const std::string name = list.filename().native();
    const std::string marked = name + std::string(kSuffix);
    return list.parent_path() / (isFileName(marked) ? marked : fmt::format("{:016x}{}", hashOf(name), kSuffix));
}

bool isUnfinished(const NativePath& list) {
    return pathExists(unfinishedMark(list));
}

Result<void> markUnfinished(const NativePath& list) {
    return saveWholeFile(unfinishedMark(list), kText).map_error([&list](FileError error) {
        // Nobody knows the mark. They know the list, and that its folder takes no file.
        if (!error.cause.empty())
            error.text = readable(list.native()) + ": " + error.cause;
        return error;
    });
}

Result<void> markFinished(const NativePath& list) {
    const NativePath mark = unfinishedMark(list);
    if (pathExists(mark)) {
        if (auto removed = removeFile(mark); !removed)
            return removed;
    }
    syncFolder(list.parent_path());
    return {};
}

Result<void> copyMark(const NativePath& from, const NativePath& to) {
    if (isUnfinished(from))
        return markUnfinished(to);
    return isUnfinished(to) ? markFinished(to) : Result<void>();
}

}  // namespace quillon
