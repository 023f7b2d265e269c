// SPDX-License-Identifier: MIT
#include "text/windows_name.h"

#include <algorithm>
#include <array>
#include <string>

#include "text/unicode.h"

namespace quillon {

namespace {

bool isDevice(std::string_view name) {
    constexpr std::array<std::string_view, 4> kDevices = {"CON", "PRN", "AUX", "NUL"};
    std::string stem(name.substr(0, name.find('.')));
    while (stem.ends_with(' ')) stem.pop_back();
    std::ranges::transform(stem, stem.begin(),
                           [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    if (std::ranges::find(kDevices, stem) != kDevices.end())
        return true;
    return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) && stem[3] >= '1' && stem[3] <= '9';
}

bool isUtf8(std::string_view name) {
    for (std::size_t at = 0; at < name.size();) {
        if (!nextUtf8(name, at))
            return false;
    }
    return true;
}

}  // namespace

bool windowsCanOpen(std::string_view name) {
    const auto isForbidden = [](char c) {
        return static_cast<unsigned char>(c) < 0x20 || std::string_view("<>:\"|?*\\").find(c) != std::string_view::npos;
    };
    if (name.empty() || name.ends_with('.') || name.ends_with(' ') || std::ranges::any_of(name, isForbidden))
        return false;
    return !isDevice(name) && isUtf8(name);
}

}  // namespace quillon
