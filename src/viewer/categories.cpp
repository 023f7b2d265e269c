// SPDX-License-Identifier: MIT
#include "viewer/categories.h"

#include <algorithm>
#include <array>

#include "platform/whole_file.h"
#include "text/fields.h"
#include "text/page_text.h"

namespace quillon {

Result<std::vector<std::u16string>> readCategories(const NativePath& errorsFile, const ReportMessages& messages) {
    const auto bytes = readWholeFile(errorsFile);
    if (!bytes)
        return failure(bytes.error());
    std::vector<std::u16string> categories;
    for (const auto line : splitLines(*bytes)) {
        std::u16string text = pageBytesToUtf16(line);
        if (!trim(std::u16string_view(text)).empty() && text != messages[Message::Good])
            categories.push_back(std::move(text));
    }
    return categories;
}

bool canEditCategory(int entry, const std::u16string& text, const ReportMessages& messages) {
    constexpr std::array kNotTaught = {Message::AccessError, Message::Encrypted, Message::TooSmall, Message::ZeroBytes};
    return entry != 0 && std::none_of(kNotTaught.begin(), kNotTaught.end(),
                                      [&](Message message) { return text == messages[message]; });
}

}  // namespace quillon
