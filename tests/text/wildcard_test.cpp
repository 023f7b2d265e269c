// SPDX-License-Identifier: MIT
// The wildcard match: each construct by itself, what is no pattern, and that no pattern can stall a walk.
#include "text/wildcard.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "text/unicode.h"

namespace quillon {
namespace {

struct Case {
    std::u16string pattern;
    std::u16string text;
    bool fits;
};

void expectAll(const std::vector<Case>& cases) {
    for (const auto& c : cases) {
        const auto pattern = WildcardPattern::compile(c.pattern);
        ASSERT_TRUE(pattern) << utf16ToUtf8(c.pattern);
        EXPECT_EQ(pattern->matches(c.text), c.fits) << utf16ToUtf8(c.pattern) << " on " << utf16ToUtf8(c.text);
    }
}

TEST(Wildcard, APatternWithoutWildcardsFitsItselfAlone) {
    expectAll({{u"abc", u"abc", true},
               {u"abc", u"ab", false},
               {u"abc", u"abcd", false},
               {u"abc", u"ABC", false},
               {u"", u"", true},
               {u"", u"a", false}});
}

TEST(Wildcard, AStarFitsAnyRunAndTheEmptyOne) {
    expectAll({{u"*", u"", true},
               {u"*", u"anything/at all", true},
               {u"**", u"a", true},
               {u"a*", u"a", true},
               {u"a*", u"ba", false},
               {u"*a", u"bba", true},
               {u"*a", u"bbab", false},
               {u"a*c", u"abbbc", true},
               {u"a*c", u"ac", true},
               {u"a*b*c", u"a-b-b-c", true},
               {u"a*b*c", u"a-c-b", false},
               {u"*ab*ab", u"ab-ab-ab", true},
               {u"*.tmp*", u"/x/old.tmp.jpg", true},
               {u"*.tmp*", u"/x/oldtmp", false}});
}

TEST(Wildcard, AQuestionMarkFitsExactlyOneCharacter) {
    expectAll({{u"?", u"a", true},
               {u"?", u"", false},
               {u"?", u"ab", false},
               {u"a?c", u"abc", true},
               {u"*?", u"", false},
               {u"*?", u"a", true}});
}

TEST(Wildcard, ANumberSignFitsOneDigit) {
    expectAll({{u"#", u"0", true},
               {u"#", u"9", true},
               {u"#", u"a", false},
               {u"#", u"#", false},
               {u"#", u"\u0663", false},
               {u"*dsc####.jpg", u"/x/dsc0042.jpg", true},
               {u"*dsc####.jpg", u"/x/dsc042.jpg", false}});
}

TEST(Wildcard, ASetFitsOneOfItsCharacters) {
    expectAll({{u"[abc]", u"b", true},
               {u"[abc]", u"d", false},
               {u"[abc]", u"", false},
               {u"[abc]", u"ab", false},
               {u"[a-c]x", u"bx", true},
               {u"[a-c]", u"d", false},
               {u"[a-c0-9]", u"7", true},
               {u"[*]", u"*", true},
               {u"[*]", u"a", false},
               {u"[?#]", u"#", true},
               {u"[[]", u"[", true},
               {u"[a-a]", u"a", true}});
}

TEST(Wildcard, AnExclamationMarkBehindTheBracketNegatesTheSet) {
    expectAll({{u"[!abc]", u"d", true},
               {u"[!abc]", u"a", false},
               {u"[!abc]", u"", false},
               {u"[!0-9]", u"x", true},
               {u"[!0-9]", u"5", false},
               {u"[a!]", u"!", true},
               {u"[!!]", u"!", false},
               {u"!", u"!", true}});
}

TEST(Wildcard, AHyphenAtEitherEndOfASetIsItself) {
    expectAll({{u"[-a]", u"-", true},
               {u"[-a]", u"a", true},
               {u"[a-]", u"-", true},
               {u"[a-]", u"b", false},
               {u"[!-]", u"-", false},
               {u"[-]", u"-", true}});
}

TEST(Wildcard, AnEmptySetFitsTheEmptyText) {
    expectAll({{u"[]", u"", true}, {u"a[]b", u"ab", true}, {u"a[]b", u"a-b", false}, {u"*[]*", u"abc", true}});
}

TEST(Wildcard, AClosingBracketAloneIsItself) {
    expectAll({{u"]", u"]", true}, {u"a]b", u"a]b", true}});
}

TEST(Wildcard, ASetWithoutItsEndOrARangeThatRunsBackwardsIsNoPattern) {
    for (const auto* bad : {u"[", u"*[abc", u"*[*", u"a[!", u"[z-a]", u"*[9-0]*", u"[!z-a]", u"[ab][c"})
        EXPECT_FALSE(WildcardPattern::compile(bad)) << utf16ToUtf8(bad);
}

TEST(Wildcard, CharactersOutsideTheBasicPlaneFitAsTheyStand) {
    expectAll({{u"*\U0001F600*", u"/a/\U0001F600.jpg", true}, {u"*\U0001F600*", u"/a/\U0001F601.jpg", false}});
}

// Another way to the same answer, for short texts only: tries every length for every star.
bool fitsByTrying(std::u16string_view pattern, std::u16string_view text) {
    if (pattern.empty())
        return text.empty();
    if (pattern.front() == u'*') {
        for (std::size_t n = 0; n <= text.size(); ++n) {
            if (fitsByTrying(pattern.substr(1), text.substr(n)))
                return true;
        }
        return false;
    }
    if (text.empty())
        return false;
    const bool one = pattern.front() == u'?' || pattern.front() == text.front();
    return one && fitsByTrying(pattern.substr(1), text.substr(1));
}

TEST(Wildcard, RandomPatternsFitAsTryingEveryLengthSays) {
    std::mt19937 random(5);
    const auto pick = [&random](std::u16string_view from, std::size_t most) {
        std::u16string out;
        for (auto n = random() % (most + 1); n > 0; --n) out.push_back(from[random() % from.size()]);
        return out;
    };
    for (int i = 0; i < 20000; ++i) {
        const auto pattern = pick(u"ab*?*", 7);
        const auto text = pick(u"ab", 9);
        const auto compiled = WildcardPattern::compile(pattern);
        ASSERT_TRUE(compiled);
        ASSERT_EQ(compiled->matches(text), fitsByTrying(pattern, text))
            << utf16ToUtf8(pattern) << " on " << utf16ToUtf8(text);
    }
}

double cpuSecondsOfMatch(const WildcardPattern& pattern, std::size_t length) {
    const std::u16string text(length, u'a');
    double least = 1e9;
    for (int i = 0; i < 5; ++i) {
        const std::clock_t start = std::clock();
        EXPECT_FALSE(pattern.matches(text));
        least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return least;
}

// A match that tries every split of the text would take the length to the power of the stars, which would never end
// here; steps of at most text times pattern grow with the length alone. The bound leaves a factor of eight to a busy
// machine.
TEST(Wildcard, APatternOfManyStarsGrowsWithTheTextAlone) {
    std::u16string pattern;
    for (int i = 0; i < 20; ++i) pattern += u"*a";
    const auto compiled = WildcardPattern::compile(pattern + u"*b");
    ASSERT_TRUE(compiled);
    const double shorter = cpuSecondsOfMatch(*compiled, 200000);
    const double longer = cpuSecondsOfMatch(*compiled, 800000);
    EXPECT_LT(longer, std::max(shorter, 1e-4) * 32);
}

}  // namespace
}  // namespace quillon
