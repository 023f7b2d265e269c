// SPDX-License-Identifier: MIT
#include "programs/window_command.h"

#include <gtest/gtest.h>

#include "app/version.h"

namespace quillon {
namespace {

TEST(WindowCommand, HelpAndVersionAreAnsweredWhereverTheyStand) {
    const Version version = programVersion();
    const std::string told = "quillon " + std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
                             std::to_string(version.revision) + "\n";
    EXPECT_EQ(windowAnswer({"--version"}), told);
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"--help"}, {"-h"}, {"-platform", "xcb", "--help", "--version"}})
        EXPECT_TRUE(windowAnswer(arguments).value_or("").starts_with("Usage: quillon ")) << arguments.front();
}

TEST(WindowCommand, EverythingElseOpensTheWindow) {
    EXPECT_FALSE(windowAnswer({}));
    EXPECT_FALSE(windowAnswer({"-platform", "offscreen"}));
    EXPECT_FALSE(windowAnswer({"--helpful", "version"}));
}

TEST(WindowCommand, WithoutADisplayTheReasonStandsBehindASentence) {
    EXPECT_TRUE(withoutDisplay("no plugin").ends_with("quillon-job.\nno plugin\n"));
    EXPECT_TRUE(withoutDisplay("no plugin\n").ends_with("quillon-job.\nno plugin\n"));
}

}  // namespace
}  // namespace quillon
