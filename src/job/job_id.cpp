// SPDX-License-Identifier: MIT
#include "job/job_id.h"

#include <algorithm>

#include "text/fields.h"

namespace quillon {

std::string withoutForbidden(std::string_view text) {
    static constexpr std::string_view forbidden = "\":\\/@*?<>|";
    std::string clean(text);
    clean.erase(std::remove_if(clean.begin(), clean.end(), [](char c) { return forbidden.find(c) != forbidden.npos; }),
                clean.end());
    return clean;
}

std::string cleanJobId(std::string_view text) {
    return withoutForbidden(trim(text));
}

}  // namespace quillon
