// SPDX-License-Identifier: MIT
#include "text/wildcard.h"

#include <algorithm>

namespace quillon {

bool WildcardPattern::Token::fits(char16_t unit) const {
    switch (kind) {
        case Kind::Literal:
            return unit == literal;
        case Kind::AnyOne:
            return true;
        case Kind::Digit:
            return unit >= u'0' && unit <= u'9';
        case Kind::Set: {
            const bool inside = std::any_of(ranges.begin(), ranges.end(),
                                            [unit](const Range& r) { return unit >= r.first && unit <= r.last; });
            return inside != negated;
        }
        case Kind::AnyRun:
            break;
    }
    return false;
}

// The text between the brackets. A hyphen at either end is itself.
bool WildcardPattern::compileSet(std::u16string_view body, Token& token) {
    token.kind = Kind::Set;
    if (!body.empty() && body.front() == u'!') {
        body.remove_prefix(1);
        if (body.empty()) {  // "[!]" is the exclamation mark itself
            token.ranges.push_back({u'!', u'!'});
            return true;
        }
        token.negated = true;
    }
    for (std::size_t i = 0; i < body.size(); ++i) {
        if (i + 2 < body.size() && body[i + 1] == u'-') {
            if (body[i] > body[i + 2])
                return false;
            token.ranges.push_back({body[i], body[i + 2]});
            i += 2;
        } else {
            token.ranges.push_back({body[i], body[i]});
        }
    }
    return true;
}

std::optional<WildcardPattern> WildcardPattern::compile(std::u16string_view pattern) {
    WildcardPattern compiled;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        Token token;
        switch (pattern[i]) {
            case u'*':
                if (!compiled.tokens_.empty() && compiled.tokens_.back().kind == Kind::AnyRun)
                    continue;
                token.kind = Kind::AnyRun;
                break;
            case u'?':
                token.kind = Kind::AnyOne;
                break;
            case u'#':
                token.kind = Kind::Digit;
                break;
            case u'[': {
                const auto close = pattern.find(u']', i + 1);
                if (close == pattern.npos)
                    return std::nullopt;
                const auto body = pattern.substr(i + 1, close - i - 1);
                i = close;
                if (body.empty())
                    continue;
                if (!compileSet(body, token))
                    return std::nullopt;
                break;
            }
            default:
                token.literal = pattern[i];
        }
        compiled.tokens_.push_back(std::move(token));
    }
    return compiled;
}

std::u16string WildcardPattern::longestLiteral() const {
    std::u16string longest;
    std::u16string run;
    for (const auto& token : tokens_) {
        if (token.kind == Kind::Literal) {
            run.push_back(token.literal);
        } else {
            run.clear();
        }
        if (run.size() > longest.size()) {
            longest = run;
        }
    }
    return longest;
}

bool WildcardPattern::matches(std::u16string_view text) const {
    // Only the last run of any length has to be tried again: what an earlier one could give, the later one can too.
    constexpr auto none = static_cast<std::size_t>(-1);
    std::size_t token = 0;
    std::size_t at = 0;
    std::size_t runToken = none;
    std::size_t runAt = 0;
    while (at < text.size()) {
        if (token < tokens_.size() && tokens_[token].kind == Kind::AnyRun) {
            runToken = token++;
            runAt = at;
        } else if (token < tokens_.size() && tokens_[token].fits(text[at])) {
            ++token;
            ++at;
        } else if (runToken != none) {
            token = runToken + 1;
            at = ++runAt;
        } else {
            return false;
        }
    }
    while (token < tokens_.size() && tokens_[token].kind == Kind::AnyRun) ++token;
    return token == tokens_.size();
}

}  // namespace quillon
