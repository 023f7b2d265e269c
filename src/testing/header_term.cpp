// SPDX-License-Identifier: MIT
#include "testing/header_term.h"

#include <charconv>
#include <cstring>

#include "text/fields.h"
#include "text/numbers.h"
#include "text/page_text.h"

namespace quillon {

namespace {

int digitOf(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

// The whole field as a number, blanks around it and a sign allowed; anything else, words for what is not finite
// included, is 0.
double plainPosition(std::string_view field) {
    auto text = trim(field);
    if (text.find_first_not_of("+-.0123456789eE") != text.npos)
        return 0;
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    double value = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), value);
    return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size() ? value : 0;
}

bool isHexadecimal(const std::vector<std::string_view>& fields) {
    return fields.size() < 3 || fields[2] == "H";
}

}  // namespace

std::string hexToText(std::string_view hex) {
    std::string out;
    out.reserve(hex.size() / 2 + 1);
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        int value = digitOf(hex[i]);
        if (i + 1 < hex.size()) {
            const int low = digitOf(hex[i + 1]);
            value = value < 0 || low < 0 ? -1 : value * 16 + low;
        }
        out.push_back(static_cast<char>(static_cast<unsigned char>(value < 0 ? 0 : value)));
    }
    return out;
}

void foldHeader(HeaderBytes& head) {
    lowerPageInPlace(head);
}

CompiledTerm CompiledTerm::fromParts(double position, std::string_view term, bool hexadecimal) {
    CompiledTerm compiled;
    compiled.folded_ = hexadecimal ? hexToText(term) : std::string(term);
    lowerPageInPlace(compiled.folded_);
    if (position == 0) {
        compiled.place_ = Place::Anywhere;
        return compiled;
    }
    const std::int32_t rounded = roundedNumber(position);
    if (rounded < 1) {
        compiled.place_ = Place::NotAPosition;
        return compiled;
    }
    compiled.offset_ = static_cast<std::uint32_t>(rounded) - 1;
    // Nothing exists beyond the buffer: a term that would need more is never there, and the empty one ends at its end.
    const bool fits = compiled.offset_ <= kHeaderBytes && compiled.folded_.size() <= kHeaderBytes - compiled.offset_;
    compiled.place_ = fits ? Place::Fixed : Place::Nowhere;
    return compiled;
}

CompiledTerm CompiledTerm::fromTermFileLine(std::string_view line) {
    const auto fields = splitFields(line);
    if (fields.size() < 2)
        return {};
    return fromParts(numericPrefix(fields[0]), fields[1], isHexadecimal(fields));
}

CompiledTerm CompiledTerm::fromCommonLine(std::string_view line) {
    const auto fields = splitFields(line);
    if (fields.size() < 2)
        return {};
    return fromParts(plainPosition(fields[0]), fields[1], isHexadecimal(fields));
}

MatchResult CompiledTerm::match(const HeaderBytes& folded) const {
    const auto hit = [](bool found) { return found ? MatchResult::Yes : MatchResult::No; };
    switch (place_) {
        case Place::Anywhere:
            return hit(std::string_view(folded.data(), folded.size()).find(folded_) != std::string_view::npos);
        case Place::Fixed:
            // Most terms are told by their first byte.
            return hit(folded_.empty() || (folded[offset_] == folded_.front() &&
                                           std::memcmp(folded.data() + offset_, folded_.data(), folded_.size()) == 0));
        case Place::Nowhere:
            return MatchResult::No;
        case Place::NotAPosition:
            return MatchResult::GivenUp;
        case Place::Defective:
            break;
    }
    return MatchResult::Defective;
}

}  // namespace quillon
