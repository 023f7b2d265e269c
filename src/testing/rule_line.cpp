// SPDX-License-Identifier: MIT
#include "testing/rule_line.h"

#include "platform/whole_file.h"

namespace quillon {

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
    return appendToFile(file, (openEnd ? "\r\n" : "") + oneLine + "\r\n")
        .and_then([&file] { return syncFile(file); })
        .map([&folder] { syncFolder(folder); });
}

}  // namespace quillon
