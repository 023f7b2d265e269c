// SPDX-License-Identifier: MIT
// The shorthands of Dialogs, and that the scripted twin of the tests catches what it should.
#include "app/dialogs.h"

#include <gtest/gtest.h>

#include "support/scripted_dialogs.h"

namespace quillon {
namespace {

using test::ScriptedDialogs;

TEST(Dialogs, ShorthandsShowTheBoxThatTheyName) {
    ScriptedDialogs dialogs;
    dialogs.expectBox("Title", "Told", BoxAnswer::Ok, BoxStyle::Plain, BoxButtons::Ok);
    dialogs.tell("Title", "Told");
    dialogs.expectBox("Title", "Warned", BoxAnswer::Ok, BoxStyle::Warning, BoxButtons::Ok);
    dialogs.warn("Title", "Warned");
    dialogs.expectBox("Title", "Asked", BoxAnswer::Yes, BoxStyle::Question, BoxButtons::YesNo);
    EXPECT_TRUE(dialogs.ask("Title", "Asked"));
    dialogs.expectBox("Title", "Asked", BoxAnswer::No, BoxStyle::Critical, BoxButtons::YesNo);
    EXPECT_FALSE(dialogs.ask("Title", "Asked", BoxStyle::Critical));
}

TEST(Dialogs, TheScriptTellsWrongUnexpectedAndLeftOverQuestions) {
    int problems = 0;
    {
        ScriptedDialogs dialogs;
        dialogs.onProblem = [&problems](const std::string&) { ++problems; };
        dialogs.tell("No one", "expected this");
        EXPECT_EQ(problems, 1);
        dialogs.expectBox("Title", "Text");
        dialogs.tell("Title", "Test");
        EXPECT_EQ(problems, 2);
        dialogs.expectInput("Title", "Prompt", "answer");
        EXPECT_FALSE(dialogs.ask("Title", "a box where an input is expected"));
        EXPECT_EQ(problems, 3);
    }
    EXPECT_EQ(problems, 4) << "the input was never asked for";
}

}  // namespace
}  // namespace quillon
