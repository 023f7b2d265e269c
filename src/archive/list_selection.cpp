// SPDX-License-Identifier: MIT
#include "archive/list_selection.h"

#include <algorithm>

#include "archive/file_mask.h"
#include "text/unicode.h"

namespace quillon {

std::string listMask(std::string_view jobId, std::string_view separator, bool ignoreSeparator) {
    const std::u16string job = utf8ToUtf16(jobId);
    const auto found = job.empty() ? std::u16string::npos : job.find(utf8ToUtf16(separator));
    if (found == std::u16string::npos)
        return std::string(jobId) + (ignoreSeparator ? "*.csv" : ".csv");
    return utf16ToUtf8(job.substr(0, ignoreSeparator ? found : found + 1)) + "*.csv";
}

std::vector<NativePath> findLists(const NativePath& folder, std::string_view jobId, std::string_view separator,
                                  bool ignoreSeparator) {
    auto names = listByMask(folder, listMask(jobId, separator, ignoreSeparator));
    if (names.empty())
        names = listByMask(folder, std::string(jobId) + "*.csv");
    std::vector<NativePath> lists;
    lists.reserve(names.size());
    for (const auto& name : names) lists.push_back(folder / name);
    return lists;
}

std::string archiveBaseName(std::string_view jobId, std::string_view separator) {
    std::u16string reversed = utf8ToUtf16(jobId);
    std::reverse(reversed.begin(), reversed.end());
    const auto found = reversed.empty() ? std::u16string::npos : reversed.find(utf8ToUtf16(separator));
    if (found == std::u16string::npos)
        return std::string(jobId);
    reversed.erase(0, found + 1);
    std::reverse(reversed.begin(), reversed.end());
    return utf16ToUtf8(reversed);
}

}  // namespace quillon
