// SPDX-License-Identifier: MIT
#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include <fmt/format.h>

namespace quillon {

namespace {

std::string withSeparators(std::string digits) {
    const std::size_t first = !digits.empty() && digits.front() == '-' ? 1 : 0;
    for (std::size_t i = digits.size(); i > first + 3;) {
        i -= 3;
        digits.insert(i, 1, ',');
    }
    return digits;
}

// The number with this many decimals, a half going away from zero. What is rounded are the fifteen digits that stand
// for the number in a decimal world, so that 0.285 is a half and not a little less.
std::string withDecimals(double number, int decimals) {
    const double size = std::isfinite(number) ? std::abs(number) : 0;
    const int whole = size >= 10 ? static_cast<int>(std::log10(size)) + 1 : 1;
    std::string text = fmt::format("{:.{}f}", size, std::max(decimals + 1, 15 - whole));
    const std::size_t cut = text.find('.') + 1 + static_cast<std::size_t>(decimals);
    bool carry = text[cut] >= '5';
    text.resize(cut);
    for (std::size_t i = cut; carry && i-- > 0;) {
        if (text[i] == '.')
            continue;
        carry = text[i] == '9';
        text[i] = carry ? '0' : static_cast<char>(text[i] + 1);
    }
    if (carry)
        text.insert(0, 1, '1');
    const bool zero = text.find_first_not_of("0.") == std::string::npos;
    return number < 0 && !zero ? "-" + text : text;
}

template <typename Char>
constexpr bool isDigit(Char c) {
    return c >= Char('0') && c <= Char('9');
}

// Collects the characters that can stand in a number, in the state the number is in. Blanks are skipped wherever they
// stand.
class NumberReader {
public:
    // False when `c` cannot continue the number.
    bool take(char c) {
        if (c == ' ' || c == '\t')
            return true;
        if (isDigit(c))
            return takeDigit(c);
        if ((c == '+' || c == '-') && (text_.empty() || text_.back() == 'e'))
            return put(c);
        if (c == '.' && !point_ && !exponent_) {
            point_ = true;
            return put(c);
        }
        if ((c == 'e' || c == 'E' || c == 'd' || c == 'D') && digits_ && !exponent_) {
            exponent_ = true;
            return put('e');
        }
        return false;
    }

    [[nodiscard]] double value() const {
        if (!digits_)
            return 0;
        const char* begin = text_.data();
        const char* end = begin + text_.size();
        if (*begin == '+')
            ++begin;
        double number = 0;
        const auto result = std::from_chars(begin, end, number);
        if (result.ec == std::errc::result_out_of_range)
            return tooSmall(begin) ? 0 : std::copysign(std::numeric_limits<double>::infinity(), *begin == '-' ? -1 : 1);
        return result.ec == std::errc() ? number : 0;
    }

private:
    // Of a number that no double holds: whether it lies next to zero and not beyond all range.
    [[nodiscard]] bool tooSmall(const char* begin) const {
        const char first = *begin == '-' ? begin[1] : *begin;
        return first == '0' || first == '.' || text_.find("e-") != std::string::npos;
    }
    bool takeDigit(char c) {
        digits_ = true;
        return put(c);
    }
    bool put(char c) {
        text_.push_back(c);
        return true;
    }

    std::string text_;
    bool digits_ = false;
    bool point_ = false;
    bool exponent_ = false;
};

template <typename Char>
double readPrefix(std::basic_string_view<Char> text) {
    // Nearly every number of a list is a plain one: a blank and digits.
    std::size_t i = 0;
    while (i < text.size() && text[i] == Char(' ')) ++i;
    double value = 0;
    const std::size_t start = i;
    while (i < text.size() && isDigit(text[i]) && i - start < 15)
        value = value * 10 + static_cast<double>(text[i++] - Char('0'));
    if (i == text.size())
        return value;
    const auto next = text[i];
    if (i > start && (next == Char(';') || next == Char(',')))
        return value;

    NumberReader reader;
    for (const Char c : text) {
        if (static_cast<std::uint32_t>(c) > 0x7F || !reader.take(static_cast<char>(c)))
            break;
    }
    return reader.value();
}

}  // namespace

std::string plainNumber(std::int64_t number) {
    return fmt::format("{: d}", number);
}

void appendPlainNumber(std::u16string& out, std::uint64_t number) {
    std::array<char, 24> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    out.push_back(u' ');
    for (const char* c = buffer.data(); c != end; ++c) out.push_back(static_cast<char16_t>(*c));
}

std::string grouped(std::int64_t number) {
    return withSeparators(fmt::format("{}", number));
}

std::string groupedOneDecimal(double number) {
    const std::string text = withDecimals(number, 1);
    const auto point = text.find('.');
    return withSeparators(text.substr(0, point)) + text.substr(point);
}

std::string percent(double fraction) {
    return withDecimals(fraction * 100.0, 2) + "%";
}

std::string sizeText(std::uint64_t bytes) {
    struct Unit {
        std::uint64_t size;
        const char* name;
    };
    constexpr std::array<Unit, 4> units = {
        {{1ULL << 40, "Tb"}, {1ULL << 30, "Gb"}, {1ULL << 20, "Mb"}, {1ULL << 10, "Kb"}}};
    for (const auto& unit : units) {
        if (bytes > unit.size)
            return groupedOneDecimal(static_cast<double>(bytes) / static_cast<double>(unit.size)) + " " + unit.name;
    }
    return grouped(static_cast<std::int64_t>(bytes)) + " Bytes";
}

double numericPrefix(std::u16string_view text) {
    return readPrefix(text);
}

double numericPrefix(std::string_view text) {
    return readPrefix(text);
}

std::int32_t leadingNumber(std::string_view text) {
    return roundedNumber(std::trunc(numericPrefix(text)));
}

std::int32_t roundedNumber(double number) {
    const double rounded = std::nearbyint(number);
    if (std::isnan(rounded))
        return 0;
    if (rounded >= static_cast<double>(std::numeric_limits<std::int32_t>::max()))
        return std::numeric_limits<std::int32_t>::max();
    if (rounded <= static_cast<double>(std::numeric_limits<std::int32_t>::min()))
        return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(rounded);
}

}  // namespace quillon
