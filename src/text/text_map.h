// SPDX-License-Identifier: MIT
#pragma once

// A hash map by text that is asked by a view of it: no text is made for the question.

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quillon {

template <typename Char>
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::basic_string_view<Char> text) const {
        return std::hash<std::basic_string_view<Char>>()(text);
    }
};

template <typename Char, typename Value>
using TextMap = std::unordered_map<std::basic_string<Char>, Value, TextHash<Char>, std::equal_to<>>;

}  // namespace quillon
