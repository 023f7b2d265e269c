// SPDX-License-Identifier: MIT
// What another computer is told behind a run of "Zip", and what becomes of its answer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "archive/zip_screen.h"

namespace quillon::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;

class ZipNotificationTest : public testing::Test, public ZipScreen {
protected:
    ZipNotificationTest() {
        installation.settings.zipRecipient.assign(PageText{"DESK2"});
        open();
    }
    std::string expectedLog(const std::string& recipient, const std::string& outcome) const {
        return "Zip notification message Sent to :; " + recipient + "; Files in zip : ;" +
               path("local/1234-Partition 1.csv") + "," + path("local/1234-Partition 2.csv") + ";Send message = ;" +
               outcome + "\r\n";
    }
};

TEST_F(ZipNotificationTest, AnAcknowledgedNotificationIsTold) {
    expectComplete("Zip process completed and notifications sent without any errors");
    lists.zip();
    ASSERT_EQ(alerts.sent.size(), 1U);
    EXPECT_EQ(alerts.sent[0].target, "DESK2");
    EXPECT_EQ(alerts.sent[0].ackRequest, 1);
    EXPECT_EQ(alerts.sent[0].subject, "File list 1234-Partition 1 complete and zipped.");
    EXPECT_EQ(alerts.sent[0].body, "File list is complete. Location " + path("zips/1234.zip"));
    EXPECT_EQ(alerts.sent[0].alertFlag, 0);
    EXPECT_EQ(alerts.sent[0].stateBefore, AckState::Pending);
    EXPECT_TRUE(alerts.sent[0].closedBefore);
    EXPECT_EQ(alerts.waits, 1);
    EXPECT_THAT(logText(), EndsWith(expectedLog("DESK2", " Yes and acknowledgment received")));
}

TEST_F(ZipNotificationTest, WhoIsWaitedForIsSaidWhileItLasts) {
    std::string during;
    alerts.onSend = [&] { during = lists.noticeLine(); };
    expectComplete("Zip process completed and notifications sent without any errors");
    lists.zip();
    EXPECT_EQ(during, "Waiting for DESK2 ...");
    EXPECT_EQ(lists.noticeLine(), "Archive written: " + path("zips/1234.zip"));
}

TEST_F(ZipNotificationTest, SilenceIsTold) {
    alerts.answer = false;
    expectComplete("Zip process completed without errors. However, notifications were not acknowledged by DESK2");
    lists.zip();
    EXPECT_EQ(alerts.waits, 0);
    EXPECT_THAT(logText(), EndsWith(expectedLog("DESK2", " Yes but no acknowledgment received")));
    EXPECT_THAT(warnings, ElementsAre()) << "a cause that is not known is no row";
}

TEST_F(ZipNotificationTest, TheCauseOfSilenceStandsBehindTheBoxAndInTheLog) {
    alerts.answer = false;
    alerts.cause = "the name is not known";
    expectComplete("Zip process completed without errors. However, notifications were not acknowledged by DESK2");
    lists.zip();
    EXPECT_EQ(fake.dialogs.lastDetails(), "the name is not known");
    EXPECT_THAT(warnings, ElementsAre("No answer from DESK2 : the name is not known"));
}

TEST_F(ZipNotificationTest, ThisComputerGetsNone) {
    lists.state.recipients.items = {"Query", "LAB7"};
    fake.dialogs.expectBox("Error", "Recipent and receiver are the same computer.", BoxAnswer::Ok, BoxStyle::Warning);
    expectComplete();
    lists.zip();
    EXPECT_TRUE(alerts.sent.empty());
    EXPECT_EQ(alerts.closings, 1) << "the sockets of an earlier test do not stay open";
    EXPECT_EQ(alerts.state, AckState::Pending);
    EXPECT_THAT(logText(), EndsWith(expectedLog("LAB7", " No - unable to send to same computer.")));
}

TEST_F(ZipNotificationTest, PleaseSelectCountsAsTheFirstItem) {
    lists.state.recipients.items = {"Please Select", "DESK2"};
    lists.state.recipients.index = 0;
    expectComplete();
    lists.zip();
    EXPECT_TRUE(alerts.sent.empty());
    EXPECT_EQ(alerts.closings, 0);
    EXPECT_THAT(logText(), EndsWith(expectedLog("Please Select", "")));
}

TEST_F(ZipNotificationTest, AnEmptyRecipientIsSentTo) {
    lists.state.recipients.items = {"Query", ""};
    alerts.answer = false;
    expectComplete("Zip process completed without errors. However, notifications were not acknowledged by ");
    lists.zip();
    ASSERT_EQ(alerts.sent.size(), 1U);
    EXPECT_EQ(alerts.sent[0].target, "");
}

}  // namespace
}  // namespace quillon::test
