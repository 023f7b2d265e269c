// SPDX-License-Identifier: MIT
#include "sectors/rescue_map.h"

#include <array>
#include <charconv>
#include <limits>
#include <optional>

#include <fmt/format.h>

#include "platform/whole_file.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::size_t kLargestMap = std::size_t{2} << 30U;
constexpr std::uint64_t kLargestPosition = std::numeric_limits<std::int64_t>::max();

constexpr std::string_view kAreaStates = "?*/-+";
constexpr std::string_view kRunStates = "?*/-FG+";  // what the run that wrote the map was doing

constexpr std::string_view kBlanks = " \t\r";

// Cuts the next field off; empty at the end of the line and at a remark.
std::string_view nextField(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    const auto field = line.starts_with('#') ? std::string_view() : line.substr(0, line.find_first_of(kBlanks));
    line.remove_prefix(field.size());
    return field;
}

// As C has numbers: decimal, 0x for hexadecimal, 0 for octal.
std::optional<std::uint64_t> numberIn(std::string_view field) {
    int base = 10;
    if (field.starts_with("0x") || field.starts_with("0X")) {
        base = 16;
        field.remove_prefix(2);
    } else if (field.starts_with('0')) {
        base = 8;
    }
    std::uint64_t number = 0;
    const auto [end, problem] = std::from_chars(field.data(), field.data() + field.size(), number, base);
    const bool whole = problem == std::errc() && end == field.data() + field.size();
    return whole && number <= kLargestPosition ? std::optional(number) : std::nullopt;
}

bool isOneOf(std::string_view states, std::string_view field) {
    return field.size() == 1 && states.find(field.front()) != states.npos;
}

// Takes line after line.
class MapReading {
public:
    // What is wrong with it; null for nothing.
    const char* take(std::string_view line) {
        const auto first = nextField(line);
        if (first.empty())
            return nullptr;
        const auto position = numberIn(first);
        const auto second = nextField(line);
        if (!position)
            return "it begins with no position";
        if (!begun_) {
            begun_ = true;
            return isOneOf(kRunStates, second) ? nullptr : "it tells no state of the run";
        }
        return takeArea(*position, numberIn(second), nextField(line));
    }

    [[nodiscard]] bool hasAreas() const { return areas_; }
    [[nodiscard]] RescueMap takeMap() { return std::move(map_); }

private:
    const char* takeArea(std::uint64_t position, std::optional<std::uint64_t> size, std::string_view state) {
        if (!size || *size > kLargestPosition - position)
            return "it tells no size";
        if (!isOneOf(kAreaStates, state))
            return "it tells no state of an area";
        if (position < map_.end)
            return "its area lies over another one";
        areas_ = true;
        append(map_.missing, {map_.end, position});
        if (state != "+")
            append(map_.missing, {position, position + *size});
        map_.end = position + *size;
        return nullptr;
    }

    RescueMap map_;
    bool begun_ = false;
    bool areas_ = false;
};

}  // namespace

Result<RescueMap> parseRescueMap(std::string_view text) {
    MapReading reading;
    std::size_t number = 0;
    while (!text.empty()) {
        const auto length = std::min(text.find('\n'), text.size());
        ++number;
        if (const char* problem = reading.take(text.substr(0, length)); problem != nullptr)
            return failure(ErrorKind::InvalidArgument, fmt::format("line {} is none of a map: {}", number, problem));
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    if (!reading.hasAreas())
        return failure(ErrorKind::InvalidArgument, "it is no map: it tells of no area");
    return reading.takeMap();
}

Result<RescueMap> readRescueMap(const NativePath& file) {
    const auto text = readWholeFile(file, kLargestMap);
    if (!text)
        return failure(text.error());
    auto map = parseRescueMap(*text);
    if (!map)
        return failure(map.error().kind, readable(file.native()) + ": " + map.error().text);
    return map;
}

std::string domainMap(const ByteRanges& wanted, std::uint64_t end, std::uint64_t sectorBytes) {
    ByteRanges whole;
    for (const auto& range : wanted) {
        const std::uint64_t behind = range.end % sectorBytes == 0 ? 0 : sectorBytes - range.end % sectorBytes;
        append(whole, {range.begin - range.begin % sectorBytes,
                       behind > end || range.end > end - behind ? end : range.end + behind});
    }
    std::string text =
        "# Domain for ddrescue: what is wanted is marked as finished. Created by quillon-list\n"
        "# current_pos  current_status  current_pass\n0x00000000     +               1\n#      pos        size  status\n";
    std::uint64_t at = 0;
    const auto put = [&](std::uint64_t until, char state) {
        if (until > at)
            text += fmt::format("0x{:08X}  0x{:08X}  {}\n", at, until - at, state);
        at = until;
    };
    for (const auto& range : whole) {
        put(range.begin, '?');
        put(range.end, '+');
    }
    put(end, '?');
    return text;
}

}  // namespace quillon
