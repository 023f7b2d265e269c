// SPDX-License-Identifier: MIT
#include "text/check_sum_line.h"

#include <algorithm>

namespace quillon {

namespace {

constexpr std::size_t kDigits = 64;

std::string escaped(std::string_view name) {
    std::string text;
    for (const char byte : name) {
        if (byte == '\n')
            text += "\\n";
        else if (byte == '\r')
            text += "\\r";
        else if (byte == '\\')
            text += "\\\\";
        else
            text += byte;
    }
    return text;
}

std::optional<std::string> unescaped(std::string_view text) {
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            name += text[i];
            continue;
        }
        const char code = ++i < text.size() ? text[i] : '\0';
        if (code != 'n' && code != 'r' && code != '\\')
            return std::nullopt;
        name += code == 'n' ? '\n' : code == 'r' ? '\r' : '\\';
    }
    return name;
}

std::optional<std::string> digestOf(std::string_view text) {
    std::string digest(text);
    for (char& digit : digest) {
        if (digit >= 'A' && digit <= 'F')
            digit = static_cast<char>(digit - 'A' + 'a');
        if (!((digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f')))
            return std::nullopt;
    }
    return digest;
}

}  // namespace

std::string checkSumLine(std::string_view digest, std::string_view name) {
    const bool odd = name.find_first_of("\\\n\r") != name.npos;
    std::string line = odd ? "\\" : "";
    line += digest;
    line += "  ";
    // "-" alone is standard input.
    if (name == "-")
        line += "./";
    line += odd ? escaped(name) : std::string(name);
    line += '\n';
    return line;
}

std::optional<CheckSum> readCheckSumLine(std::string_view line) {
    const bool odd = line.starts_with('\\');
    line.remove_prefix(odd ? 1 : 0);
    if (line.size() <= kDigits + 2 || line[kDigits] != ' ' || (line[kDigits + 1] != ' ' && line[kDigits + 1] != '*'))
        return std::nullopt;
    auto digest = digestOf(line.substr(0, kDigits));
    const auto text = line.substr(kDigits + 2);
    auto name = odd ? unescaped(text) : std::optional<std::string>(text);
    if (!digest || !name || name->empty())
        return std::nullopt;
    return CheckSum{*std::move(digest), *std::move(name)};
}

}  // namespace quillon
