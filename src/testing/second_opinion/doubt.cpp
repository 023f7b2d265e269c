// SPDX-License-Identifier: MIT
#include "testing/second_opinion/doubt.h"

#include <fmt/format.h>

#include "text/numbers.h"

namespace quillon {

namespace {

// Sizes end at the largest signed number.
std::string bytesText(std::uint64_t bytes) {
    return grouped(static_cast<std::int64_t>(bytes)) + (bytes == 1 ? " byte" : " bytes");
}

Opinion saying(DoubtKind kind, std::string_view sentence) {
    return Doubt{kind, 0, std::string(sentence)};
}

}  // namespace

std::string_view doubtKindName(DoubtKind kind) {
    switch (kind) {
        case DoubtKind::Cut:
            return "cut";
        case DoubtKind::Longer:
            return "longer";
        case DoubtKind::Inconsistent:
            return "inconsistent";
        case DoubtKind::EmptyContainer:
            return "empty-container";
        case DoubtKind::NoIndex:
            return "no-index";
    }
    return {};
}

Opinion needs(Number needed, std::uint64_t size, std::string_view who, std::uint64_t slack) {
    // A length that no file can have is cited as the largest one.
    const auto bytes = std::min(needed.value_or(0), kLargestSize);
    if (bytes <= *plus(size, slack))
        return {};
    return Doubt{DoubtKind::Cut, bytes,
                 fmt::format("{} asks for at least {}, the file has {}: {} missing.", who, bytesText(bytes),
                             bytesText(size), bytesText(bytes - size))};
}

Opinion endsAt(Number end, std::uint64_t size, std::string_view who, std::uint64_t slack) {
    if (!end || size <= *plus(end, slack))
        return {};
    return Doubt{DoubtKind::Longer, *end,
                 fmt::format("{} ends after {}, the file has {}: {} behind.", who, bytesText(*end), bytesText(size),
                             bytesText(size - *end))};
}

Opinion wholeUnits(std::uint64_t unit, std::uint64_t size, std::string_view who) {
    if (size % unit == 0)
        return {};
    return Doubt{DoubtKind::Cut, roundedUp(size, unit),
                 fmt::format("{} consists of units of {}: {} missing in the last one.", who, bytesText(unit),
                             bytesText(unit - size % unit))};
}

Opinion inconsistent(std::string_view sentence) {
    return saying(DoubtKind::Inconsistent, sentence);
}

Opinion emptyContainer(std::string_view sentence) {
    return saying(DoubtKind::EmptyContainer, sentence);
}

Opinion noIndex(std::string_view sentence) {
    return saying(DoubtKind::NoIndex, sentence);
}

}  // namespace quillon
