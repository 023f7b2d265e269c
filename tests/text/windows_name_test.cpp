// SPDX-License-Identifier: MIT
#include "text/windows_name.h"

#include <string>

#include <gtest/gtest.h>

namespace quillon {
namespace {

TEST(WindowsName, OrdinaryNamesCanBeOpened) {
    for (const char* name :
         {"a", "photo 1.jpg", ".hidden", "caf\xC3\xA9", "console", "COM0", "COM10", "a.con", "nulls.txt", "(1) [2]"})
        EXPECT_TRUE(windowsCanOpen(name)) << name;
}

TEST(WindowsName, ForbiddenCharactersEndsAndDevicesCannot) {
    for (const char* name : {"a<b", "a>b", "a:b", "a\"b", "a|b", "a?b", "a*b", "a\\b", "a\nb", "end.", "end ", "CON",
                             "nul", "Aux.txt", "com1", "LPT9.log", "prn .x", "\xFF", ""})
        EXPECT_FALSE(windowsCanOpen(name)) << name;
}

}  // namespace
}  // namespace quillon
