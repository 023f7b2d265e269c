// SPDX-License-Identifier: MIT
#include "platform/start_program.h"

#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "platform/folders.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

// A program has no other way to say that it has ended than to be asked.
bool endsSoon(BackgroundPrograms& programs) {
    for (int i = 0; i < 2000 && programs.running() > 0; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return programs.running() == 0;
}

TEST(BackgroundPrograms, ArgumentsArriveAsTheyAreWithoutAShell) {
    const test::TempFolder folder;
    const std::string target = (folder.path() / "$(id) `id` ;\n*").native();
    BackgroundPrograms programs;
    ASSERT_TRUE(programs.start({"touch", "--", target}));
    EXPECT_TRUE(endsSoon(programs));
    EXPECT_TRUE(pathExists(target));
}

TEST(BackgroundPrograms, AMissingProgramIsNotFound) {
    BackgroundPrograms programs;
    const auto started = programs.start({"quillon-no-such-program"});
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error().kind, ErrorKind::NotFound);
    EXPECT_EQ(programs.running(), 0U);
}

TEST(BackgroundPrograms, ARunningProgramIsCountedAndReadsNothing) {
    BackgroundPrograms programs;
    ASSERT_TRUE(programs.start({"sleep", "0.2"}));
    ASSERT_TRUE(programs.start({"cat"}));
    EXPECT_GE(programs.running(), 1U);
    EXPECT_TRUE(endsSoon(programs)) << "cat ends at once, as its input is empty";
}

TEST(BackgroundPrograms, NoProgramIsARefusal) {
    BackgroundPrograms programs;
    EXPECT_FALSE(programs.start({}));
}

}  // namespace
}  // namespace quillon
