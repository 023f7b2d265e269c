// SPDX-License-Identifier: MIT
#include "evidence/rules_digest.h"

#include "app/rule_list_names.h"
#include "evidence/digest.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/unicode.h"

namespace quillon {

std::int64_t rulesDigest(const Paths& paths, const ReportMessages& messages) {
    Digest digest;
    const auto add = [&digest](const NativePath& file) {
        digest.add(std::string_view(readWholeFile(file).value_or(std::string())));
    };
    const NativePath& database = paths.localDatabase;
    for (const auto& name : listFiles(database).value_or(std::vector<std::string>())) {
        digest.add(std::string_view(name));
        add(database / name);
    }
    for (const char* list : {kCommonHeadersFileName, kBadSectorsFileName}) add(fileIn(paths.localSettings, list));
    for (const auto& message : messages.values) digest.add(std::string_view(utf16ToUtf8(message)));
    return digest.value();
}

}  // namespace quillon
