// SPDX-License-Identifier: MIT
#include "testing/suggest/term_trust.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace quillon {

namespace {

constexpr bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool isPrintable(char c) {
    return c > ' ' && c <= '~';
}

// What one more byte of the kind costs, as a share of the files that lose it.
constexpr double kLetterPrice = 0.002;
constexpr double kLateLetterPrice = 0.02;  // behind the fourth: a second mark may have begun
constexpr double kWordPrice = 0.01;
constexpr double kSignPrice = 0.01;
constexpr double kLineEndPrice = 0.01;
constexpr double kDigitPrice = 0.035;
constexpr double kZeroPrice = 0.03;
constexpr double kCountPrice = 0.05;
constexpr double kHighPrice = 0.02;
// How much more is lost when only two files are known.
constexpr double kDoubt = 2.5;
// A mark stands at the start; a byte that far behind it costs twice as much.
constexpr double kDoubledBehind = 16;
constexpr double kWordDoubledBehind = 128;

// A mark of four letters is as long as most formats have it.
constexpr std::size_t kMarkLetters = 4;

// A mark of one number with zeros around it.
constexpr std::size_t kShortestCount = 3;

// How much one byte tells, in bits: text and zeros are more common than the rest.
double bitsOf(char c) {
    if (c == '\0')
        return 1;
    if (isLetter(c))
        return 4;
    return isDigit(c) || c == ' ' ? 3 : 6;
}

}  // namespace

TermTrust::TermTrust(const HeaderBytes& head) : head_(head) {
    findWords();
    for (std::size_t i = 0; i < kHeaderBytes; ++i) {
        prices_[i + 1] = prices_[i] + price(i);
        bits_[i + 1] = bits_[i] + bitsOf(head_[i]);
    }
}

void TermTrust::findWords() {
    for (std::size_t start = 0; start < kHeaderBytes;) {
        std::size_t end = start;
        while (end < kHeaderBytes && isLetter(head_[end])) ++end;
        if (end - start >= 3)
            std::fill(word_.begin() + static_cast<std::ptrdiff_t>(start),
                      word_.begin() + static_cast<std::ptrdiff_t>(end), true);
        start = std::max(end, start + 1);
    }
}

std::size_t TermTrust::placeInWord(std::size_t offset) const {
    std::size_t place = 0;
    while (place < offset && word_[offset - place - 1]) ++place;
    return place;
}

double TermTrust::price(std::size_t offset) const {
    const char c = head_[offset];
    if (word_[offset]) {
        const std::size_t place = placeInWord(offset);
        const double letter = place < kMarkLetters ? kLetterPrice : kLateLetterPrice;
        return (place == 0 ? kWordPrice : letter) * (1 + static_cast<double>(offset) / kWordDoubledBehind);
    }
    double once = kHighPrice;
    if (c == '\0')
        once = kZeroPrice;
    else if (c == '\r' || c == '\n' || c == '\x1A')
        once = kLineEndPrice;
    else if (isDigit(c))
        once = kDigitPrice;
    else if (isPrintable(c) || c == ' ')
        once = kSignPrice;
    else if (static_cast<unsigned char>(c) < 0x20)
        once = kCountPrice;
    return once * (1 + static_cast<double>(offset) / kDoubledBehind);
}

// A run that begins in the midst of a header is more likely an accident.
double TermTrust::startPrice(std::size_t offset) const {
    if (offset == 0)
        return 0;
    if (word_[offset] && word_[offset - 1])
        return 0.3;
    if (word_[offset])
        return 0.03 + static_cast<double>(offset) / 600;
    return (offset % 4 == 0 && offset <= 16 ? 0.08 : 0.15) + static_cast<double>(offset) / 600;
}

// A word that is cut is no mark, unless it has the four letters of one.
double TermTrust::endPrice(std::size_t end) const {
    if (end >= kHeaderBytes || !word_[end] || !word_[end - 1])
        return 0;
    return placeInWord(end) == kMarkLetters ? 0 : 0.06;
}

double TermTrust::kept(std::size_t offset, std::size_t length, std::size_t files) const {
    const double bytes = prices_[offset + length] - prices_[offset];
    const double proof = kDoubt * std::sqrt(2 / static_cast<double>(files));
    return std::exp(-proof * (bytes + startPrice(offset)) - endPrice(offset + length));
}

double TermTrust::bits(std::size_t offset, std::size_t length) const {
    return bits_[offset + length] - bits_[offset];
}

double TermTrust::shared(std::size_t offset, std::size_t length) const {
    return std::exp2(-bits(offset, length) / 2);
}

double TermTrust::sharedAnywhere(std::size_t offset, std::size_t length) const {
    return std::min(1.0, std::exp2(5 - bits(offset, length) / 3));
}

bool TermTrust::mayBeTerm(std::size_t offset, std::size_t length) const {
    const auto run = std::span(head_).subspan(offset, length);
    const auto said = std::ranges::count_if(run, [](char c) { return c != '\0'; });
    const bool varied = std::ranges::any_of(run, [&](char c) { return c != run.front(); });
    const bool countAtStart = offset == 0 && said == 1 && length >= kShortestCount;
    return varied && (said >= 2 || countAtStart) && run.front() != ' ' && run.back() != ' ';
}

}  // namespace quillon
