// SPDX-License-Identifier: MIT
// The tab "Alerts".
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "setup/wizard.h"
#include "setup/wizard_screen.h"

namespace quillon::test {
namespace {

using testing::ElementsAre;

class WizardAlertsTest : public testing::Test, public WizardScreen {
protected:
    WizardAlertsTest() {
        installation.settings.alertRecipient.assign(PageText{"DESK2"});
        saveSettings();
        wizard.load();
    }
    void expectRevert(const std::string& text, BoxAnswer answer) {
        fake.dialogs.expectBox("Revert Alert", text, answer, BoxStyle::Question, BoxButtons::YesNo);
    }
};

TEST_F(WizardAlertsTest, TheButtonFollowsTheChoice) {
    state().alertRecipients.items = {"Query", "Please Select", "DESK2"};
    wizard.chooseRecipient(WizardRecipient::Alert, 2);
    EXPECT_EQ(state().alertRecipients.button().caption, "Test");
    EXPECT_TRUE(state().alertRecipients.button().enabled);
    wizard.chooseRecipient(WizardRecipient::Alert, 1);
    EXPECT_FALSE(state().alertRecipients.button().enabled);
    wizard.chooseRecipient(WizardRecipient::Alert, 0);
    EXPECT_EQ(state().alertRecipients.button().caption, "Query");
    EXPECT_TRUE(state().alertRecipients.button().enabled);
}

TEST_F(WizardAlertsTest, QueryFillsItsOwnBox) {
    wizard.chooseRecipient(WizardRecipient::Zip, 1);
    ASSERT_EQ(state().zipRecipients.button().caption, "Query");
    bool sawStatus = false;
    screen.onShow = [&] {
        sawStatus = sawStatus || state().networkStatus == "Querying computers on the network, please wait ...";
    };
    wizard.pressRecipientButton(WizardRecipient::Zip);
    EXPECT_TRUE(sawStatus);
    EXPECT_THAT(state().zipRecipients.items, ElementsAre("Please Select", "DESK2", "DESK3"));
    EXPECT_EQ(state().zipRecipients.index, 0);
    EXPECT_FALSE(state().zipRecipients.button().enabled);
    EXPECT_THAT(state().alertRecipients.items, ElementsAre("DESK2", "Query"));
    EXPECT_EQ(state().networkStatus, "");
    EXPECT_FALSE(state().busyPointer);
}

TEST_F(WizardAlertsTest, TestTellsAComputerOfTheSameName) {
    state().alertRecipients.items = {"LAB7", "Query"};
    wizard.chooseRecipient(WizardRecipient::Alert, 0);
    fake.dialogs.expectBox("UDP Conflict", "Unable to send messages to computer with same name.", BoxAnswer::Ok,
                           BoxStyle::Plain);
    wizard.pressRecipientButton(WizardRecipient::Alert);
    EXPECT_TRUE(server.sent.empty());
    EXPECT_TRUE(state().alertRecipients.button().enabled);
    EXPECT_EQ(state().networkStatus, "");
}

TEST_F(WizardAlertsTest, TheCauseOfSilenceStandsInTheLog) {
    state().alertRecipients.items = {"DESK2", "Query"};
    wizard.chooseRecipient(WizardRecipient::Alert, 0);
    fake.loop.onTurn = [this](int) { fake.clock.tick += 5001; };
    server.sendFailure = FileError{ErrorKind::NotFound, "DESK2: Name or service not known"};
    fake.dialogs.expectBox(
        "Communication error",
        "Unable to connect to computer DESK2\r\nThe problem is one of the following\r\n\r\n1 The computer is turned "
        "off.\r\n2 The ZOV Messaging software is not installed on the remote computer.\r\n3 The Remote "
        "computer is listening on the wrong port.\r\n4 The Remote computer's firewall is blocking "
        "communication.\r\n5 This computer's firewall is not allowing messages to be sent.\r\n",
        BoxAnswer::Ok, BoxStyle::Warning);
    wizard.pressRecipientButton(WizardRecipient::Alert);
    EXPECT_THAT(warnings, ElementsAre("No answer from DESK2 : this computer does not know the name: DESK2: Name or "
                                      "service not known"));
}

TEST_F(WizardAlertsTest, RevertGoesBackToTheStoredName) {
    state().alertRecipients.items = {"Please Select", "DESK9"};
    expectRevert("Revert Alerts to DESK2 ?", BoxAnswer::No);
    wizard.revertRecipient(WizardRecipient::Alert);
    EXPECT_EQ(state().alertRecipients.items.size(), 2U);
    EXPECT_EQ(state().alertRecipients.items.back(), "DESK9");
    expectRevert("Revert Alerts to DESK2 ?", BoxAnswer::Yes);
    wizard.revertRecipient(WizardRecipient::Alert);
    EXPECT_THAT(state().alertRecipients.items, ElementsAre("Query", "DESK2"));
    EXPECT_EQ(state().alertRecipients.text(), "DESK2");
    EXPECT_EQ(state().alertRecipients.button().caption, "Test");
}

TEST_F(WizardAlertsTest, RevertToNobodyLeavesQuery) {
    expectRevert("Revert Zip Alerts to Nobody ?", BoxAnswer::Yes);
    wizard.revertRecipient(WizardRecipient::Zip);
    EXPECT_THAT(state().zipRecipients.items, ElementsAre("Query"));
    EXPECT_EQ(state().zipRecipients.index, 0);
    EXPECT_EQ(state().zipRecipients.button().caption, "Query");
}

TEST_F(WizardAlertsTest, NextStoresWhatTheBoxesShowQueryIncluded) {
    wizard.chooseRecipient(WizardRecipient::Alert, 1);
    state().zipRecipients.items = {"DESK3"};
    wizard.chooseRecipient(WizardRecipient::Zip, 0);
    wizard.nextAlerts();
    EXPECT_EQ(saved().alertRecipient.trimmed().bytes, "Query");
    EXPECT_EQ(saved().zipRecipient.trimmed().bytes, "DESK3");
    EXPECT_EQ(state().currentTab, kExportTab);
    EXPECT_TRUE(state().tabEnabled[kExportTab]);
    EXPECT_FALSE(state().tabEnabled[kDoneTab]);
}

}  // namespace
}  // namespace quillon::test
