// SPDX-License-Identifier: MIT
#include "text/json_text.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

// Without a picture, as what `isHidden` tells; the writer escapes only those below the blank.
bool isHighControl(char32_t character) {
    return character >= 0x7F && character <= 0x9F;
}

}  // namespace

// Outside of its strings a document is plain ASCII, so an escape can stand for every such character.
std::string jsonText(const nlohmann::ordered_json& json, int indent) {
    std::string plain = json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    if (std::ranges::all_of(plain, [](char c) { return static_cast<unsigned char>(c) < 0x7F; }))
        return plain;
    std::string text;
    text.reserve(plain.size());
    for (std::size_t i = 0; i < plain.size();) {
        const std::size_t begin = i;
        const auto character = nextUtf8(plain, i);
        if (!character || (!isHidden(*character) && !isHighControl(*character))) {
            text.append(plain, begin, i - begin);
            continue;
        }
        for (const char16_t unit : utf8ToUtf16(std::string_view(plain).substr(begin, i - begin)))
            text += fmt::format("\\u{:04x}", static_cast<unsigned>(unit));
    }
    return text;
}

}  // namespace quillon
