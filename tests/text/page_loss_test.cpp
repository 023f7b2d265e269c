// SPDX-License-Identifier: MIT
#include "text/page_loss.h"

#include <array>

#include <gtest/gtest.h>

namespace quillon {
namespace {

struct Loss {
    const char* typed;
    const char* lost;
};

TEST(PageLoss, CharactersThatThePageLacksAreToldOnceAndInOrder) {
    const std::array<Loss, 8> table = {{
        {"", ""},
        {"plain ?", ""},
        {"caf\xC3\xA9 \xE2\x82\xAC \xE2\x80\x9Cx\xE2\x80\x9D", ""},
        {"\xD0\xB6", "\xD0\xB6"},
        {"a\xD0\xB6"
         "b\xE4\xB8\xAD\xD0\xB6",
         "\xD0\xB6 \xE4\xB8\xAD"},
        {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
        {"a\xE2\x80\xAE"
         "b",
         "<U+202E>"},
        {"\xD0\xB0\xD0\xB1\xD0\xB2\xD0\xB3\xD0\xB4\xD0\xB5\xD0\xB6\xD0\xB7\xD0\xB8",
         "\xD0\xB0 \xD0\xB1 \xD0\xB2 \xD0\xB3 \xD0\xB4 \xD0\xB5 \xD0\xB6 \xD0\xB7 ..."},
    }};
    for (const auto& [typed, lost] : table) EXPECT_EQ(lostOnPage(typed), lost) << typed;
}

}  // namespace
}  // namespace quillon
