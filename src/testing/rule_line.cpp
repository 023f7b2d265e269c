// SPDX-License-Identifier: MIT
#include "testing/rule_line.h"

#include <optional>

#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

namespace {

// The list as it was before the line: of what is told as not added nothing may stand, or it stands twice once it is
// added again.
void takeBack(const NativePath& file, std::optional<std::uint64_t> length) {
    constexpr const char* kWhy = "the line that did not reach the medium is what is reported";
    if (!length)
        return passOver(removeFile(file), kWhy);
    passOver(File::openForChanging(file).and_then(
                 [length](File list) { return list.truncate(*length).and_then([&list] { return list.close(); }); }),
             kWhy);
}

}  // namespace

Result<std::string> readRuleFile(const NativePath& file) {
    return readWholeFile(file, kRuleFileLimit);
}

Result<void> appendRuleLine(const NativePath& folder, std::string_view name, const PageText& line) {
    if (folder.empty())
        return failure(ErrorKind::NotFound, "no folder is set for this list");
    const NativePath file = folder / name;
    const auto old = readRuleFile(file);
    // Unread, the last line could be an open one, which the new line would become a part of.
    if (!old && old.error().kind != ErrorKind::NotFound)
        return failure(old.error());
    const bool openEnd = old && !old->empty() && old->back() != '\n' && old->back() != '\r';
    const std::string oneLine = line.bytes.substr(0, line.bytes.find_first_of("\r\n"));
    // The file ahead of its folder, whose sync could bring its new size to the medium without the bytes.
    auto added = appendToFile(file, (openEnd ? "\r\n" : "") + oneLine + "\r\n");
    if (!added)
        return added;
    auto synced = syncFile(file);
    if (!synced)
        takeBack(file, old ? std::optional<std::uint64_t>(old->size()) : std::nullopt);
    else
        syncFolder(folder);
    return synced;
}

}  // namespace quillon
