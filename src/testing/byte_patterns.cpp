// SPDX-License-Identifier: MIT
#include "testing/byte_patterns.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "text/unicode.h"

namespace quillon {

namespace {

constexpr std::size_t kLeastRepetitions = 4;
constexpr std::size_t kLeastForNoise = 256;
constexpr double kLeastChiSquare = 160;
constexpr double kMostChiSquare = 400;

// Most data differs at once.
bool isRepeated(std::string_view bytes, std::size_t period) {
    return bytes[period] == bytes[0] && bytes.substr(period) == bytes.substr(0, bytes.size() - period);
}

// What text has below the blank: tab, line ends, form feed, and the escape of terminals.
bool isTextControl(char32_t c) {
    return c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == 0x1B;
}

bool isTextCharacter(char32_t c) {
    return c < 0x20 ? isTextControl(c) : c != 0x7F && (c < 0x80 || c >= 0xA0) && c != kReplacementCharacter;
}

// Whether the last bytes are the beginning of a character that goes on behind the end.
bool isCutCharacter(std::string_view rest) {
    const auto lead = static_cast<unsigned char>(rest.front());
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 1;
    return rest.size() < length && std::all_of(rest.begin() + 1, rest.end(),
                                               [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; });
}

std::optional<std::string_view> utf8Encoding(std::string_view bytes) {
    bool ascii = true;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t from = at;
        const auto character = nextUtf8(bytes, at);
        if (!character)
            return isCutCharacter(bytes.substr(from)) ? std::optional<std::string_view>("UTF-8") : std::nullopt;
        if (!isTextCharacter(*character))
            return std::nullopt;
        ascii = ascii && *character < 0x80;
    }
    return ascii ? "ASCII" : "UTF-8";
}

// Text of two bytes a character: nearly all of it Latin, as nothing else can be told from other data by so few bytes.
bool isUtf16(std::string_view bytes, std::size_t highByte) {
    std::size_t others = 0;
    const std::size_t units = bytes.size() / 2;
    for (std::size_t i = 0; i < units; ++i) {
        const auto high = static_cast<unsigned char>(bytes[2 * i + highByte]);
        const auto low = static_cast<unsigned char>(bytes[2 * i + 1 - highByte]);
        const bool mark = i == 0 && high == 0xFE && low == 0xFF;
        if (high == 0 && !isTextCharacter(low))
            return false;
        others += mark || high == 0 ? 0 : 1;
        if (others * 10 > units)
            return false;
    }
    return units >= 8;
}

// Letters of the page among plain ones: at most three in ten, as data of high bytes has none of text's order.
bool isPageText(std::string_view bytes) {
    std::size_t high = 0;
    for (const char c : bytes) {
        const auto value = static_cast<unsigned char>(c);
        if (value < 0x80 ? !isTextCharacter(value) : value < 0x91 || value == 0x9D)
            return false;
        high += value >= 0x80 ? 1 : 0;
    }
    return high * 10 <= bytes.size() * 3;
}

using Counts = std::array<std::uint16_t, 256>;

// Chi square over equal chances, (sum of squares) * 256 / total - total, without a division for each value.
double chiSquare(const Counts& counts, std::size_t total) {
    std::uint32_t squares = 0;
    for (const std::uint32_t count : counts) squares += count * count;
    return static_cast<double>(squares) * 256 / static_cast<double>(total) - static_cast<double>(total);
}

bool isEven(const Counts& counts, std::size_t total) {
    const double value = chiSquare(counts, total);
    return value >= kLeastChiSquare && value <= kMostChiSquare;
}

}  // namespace

std::optional<std::string_view> fillPattern(std::string_view bytes) {
    const std::size_t longest = std::min(kLongestFillPattern, bytes.size() / kLeastRepetitions);
    for (std::size_t period = 1; period <= longest; ++period) {
        if (isRepeated(bytes, period))
            return bytes.substr(0, period);
    }
    return std::nullopt;
}

std::optional<std::string_view> textEncoding(std::string_view bytes) {
    if (bytes.empty())
        return std::nullopt;
    if (bytes.starts_with("\xEF\xBB\xBF"))
        return utf8Encoding(bytes.substr(3)) ? std::optional<std::string_view>("UTF-8") : std::nullopt;
    if (const auto encoding = utf8Encoding(bytes))
        return encoding;
    if (isUtf16(bytes, 1))
        return "UTF-16 (little-endian)";
    if (isUtf16(bytes, 0))
        return "UTF-16 (big-endian)";
    return isPageText(bytes) ? std::optional<std::string_view>("Windows-1252") : std::nullopt;
}

bool looksLikeNoise(std::string_view bytes) {
    if (bytes.size() < kLeastForNoise)
        return false;
    Counts values{};
    Counts steps{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto value = static_cast<unsigned char>(bytes[i]);
        ++values[value];
        if (i > 0)
            ++steps[static_cast<unsigned char>(value - static_cast<unsigned char>(bytes[i - 1]))];
    }
    return isEven(values, bytes.size()) && isEven(steps, bytes.size() - 1);
}

}  // namespace quillon
