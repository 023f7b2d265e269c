// SPDX-License-Identifier: MIT
// A pattern, a zero byte, a text: the match agrees with a slower one that is built another way, and is bounded.
#include <vector>

#include "input.h"
#include "testing/skip_list.h"
#include "text/wildcard.h"

namespace {

using namespace quillon;

// The length of the first piece of a pattern: one character, or a set with its brackets; 0 for no pattern.
std::size_t pieceLength(std::u16string_view pattern) {
    if (pattern.front() != u'[')
        return 1;
    const auto close = pattern.find(u']', 1);
    return close == pattern.npos ? 0 : close + 1;
}

bool setFits(std::u16string_view body, char16_t c) {
    const bool negated = body.size() > 1 && body.front() == u'!';
    if (negated)
        body.remove_prefix(1);
    bool inside = false;
    while (!body.empty()) {
        const bool range = body.size() > 2 && body[1] == u'-';
        inside = inside || (range ? c >= body[0] && c <= body[2] : c == body[0]);
        body.remove_prefix(range ? 3 : 1);
    }
    return inside != negated;
}

bool oneFits(std::u16string_view piece, char16_t c) {
    if (piece.front() == u'[')
        return setFits(piece.substr(1, piece.size() - 2), c);
    return piece == u"?" || (piece == u"#" ? c >= u'0' && c <= u'9' : piece.front() == c);
}

// Row by row: which lengths of the text fit the pieces so far.
bool fitsByTable(std::u16string_view pattern, std::u16string_view text) {
    std::vector<bool> fits(text.size() + 1, false);
    fits[0] = true;
    while (!pattern.empty()) {
        const auto piece = pattern.substr(0, pieceLength(pattern));
        pattern.remove_prefix(piece.size());
        if (piece == u"[]")
            continue;
        std::vector<bool> next(text.size() + 1, false);
        for (std::size_t i = 0; i <= text.size(); ++i) {
            if (piece == u"*")
                next[i] = fits[i] || (i > 0 && next[i - 1]);
            else
                next[i] = i > 0 && fits[i - 1] && oneFits(piece, text[i - 1]);
        }
        fits = next;
    }
    return fits.back();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = fuzz::bytesOf(data, size);
    std::string_view rest = bytes;
    const std::u16string pattern = fuzz::widened(fuzz::takePiece(rest));
    const std::u16string text = fuzz::widened(rest);
    const auto compiled = WildcardPattern::compile(pattern);
    if (compiled && pattern.size() * text.size() < 1000000)
        fuzz::require(compiled->matches(text) == fitsByTable(pattern, text), "both matches agree");
    return 0;
}
