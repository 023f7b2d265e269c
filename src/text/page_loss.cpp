// SPDX-License-Identifier: MIT
#include "text/page_loss.h"

#include <set>

#include "text/list_text.h"
#include "text/page_text.h"
#include "text/unicode.h"

namespace quillon {

std::string lostOnPage(std::string_view utf8) {
    constexpr std::size_t kMost = 8;
    std::set<std::string_view> seen;
    std::string lost;
    for (std::size_t i = 0; i < utf8.size();) {
        const std::size_t start = i;
        const bool valid = nextUtf8(utf8, i).has_value();
        const std::string_view character = utf8.substr(start, i - start);
        if (!valid || character == "?" || toPage(character).bytes != "?" || !seen.insert(character).second)
            continue;
        if (seen.size() > kMost)
            return lost + " ...";
        lost += (lost.empty() ? "" : " ") + readable(character);
    }
    return lost;
}

}  // namespace quillon
