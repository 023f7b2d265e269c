// SPDX-License-Identifier: MIT
#pragma once

// The classic wildcard match of the skip list: "*" any run of characters, "?" one character, "#" one digit, "[abc]",
// "[a-z]" a set, "[!abc]" its negation. Compiled once; matching takes at most (text length) x (pattern length) steps
// whatever the pattern, so no pattern can stall a walk.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class WildcardPattern {
public:
    /// No value when the pattern is not one: a "[" without its "]", or a range that runs backwards. Case is the
    /// caller's matter: lower both sides to ignore it.
    [[nodiscard]] static std::optional<WildcardPattern> compile(std::u16string_view pattern);

    /// True when the whole of `text` fits the whole pattern. "[]" fits the empty text.
    [[nodiscard]] bool matches(std::u16string_view text) const;

    /// The longest run of plain characters in the pattern: a text that does not hold it cannot fit.
    [[nodiscard]] std::u16string longestLiteral() const;

private:
    struct Range {
        char16_t first;
        char16_t last;
    };
    enum class Kind { Literal, AnyOne, Digit, Set, AnyRun };
    struct Token {
        Kind kind = Kind::Literal;
        char16_t literal = 0;
        bool negated = false;
        std::vector<Range> ranges;

        [[nodiscard]] bool fits(char16_t unit) const;
    };

    [[nodiscard]] static bool compileSet(std::u16string_view body, Token& token);

    std::vector<Token> tokens_;
};

}  // namespace quillon
