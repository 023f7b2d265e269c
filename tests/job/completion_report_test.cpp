// SPDX-License-Identifier: MIT
#include "job/completion_report.h"

#include "job/job_board.h"
#include "job/job_fixture.h"
#include "job/scripted_alerts.h"

namespace quillon::test {

namespace {

class ReportTest : public JobFixture {
protected:
    ScriptedAlerts alerts;
};

TEST_F(ReportTest, ACleanJobHasNoMessageLines) {
    state.counters.files = 1234;
    state.counters[Grade::Good] = 1200;
    state.texts.quality = "97.56%";
    EXPECT_EQ(completionReport(state, "LAB7"),
              "File list complete for job ID : 1234 on LAB7\r\n"
              "Total Files : 1,234 (Quality : 97.56%)\r\n"
              "Good Files : 1,200\r\n"
              "\r\n"
              "Please note the following messages\r\n"
              "----------------------------------\r\n"
              "----------------------------------\r\n");
}

// A list that was opened gives its name to the job.
TEST_F(ReportTest, AJobIdThatTurnsTextIsShownAsItIs) {
    state.options.jobId = "7\xE2\x80\xAEvsc";
    EXPECT_EQ(completionReport(state, "LAB7").find("File list complete for job ID : 7<U+202E>vsc on LAB7\r\n"), 0U);
}

TEST_F(ReportTest, EveryCounterAboveZeroHasItsLineInThisOrder) {
    JobCounters& counters = state.counters;
    counters[Grade::Corrupt] = 1;
    counters[Grade::Unknown] = 2;
    counters.skipped = 3;
    counters[Grade::ZeroBytes] = 4;
    counters[Grade::InvalidName] = 5;
    counters[Grade::AccessError] = 6;
    counters[Grade::Encrypted] = 7;
    counters[Grade::TooSmall] = 8;
    counters.folderErrors = 9000;
    counters.copyErrors = 10;
    counters[Grade::CommonHeader] = 11;
    counters[Grade::NoExtension] = 12;
    EXPECT_EQ(completionReport(state, "LAB7"),
              "File list complete for job ID : 1234 on LAB7\r\n"
              "Total Files : 0 (Quality : 0)\r\n"
              "Good Files : 0\r\n"
              "\r\n"
              "Please note the following messages\r\n"
              "----------------------------------\r\n"
              "Corrupt Files : 1\r\n"
              "Unknown Files : 2\r\n"
              "Skipped Files : 3\r\n"
              "Files of zero bytes : 4\r\n"
              "Invalid File Names : 5\r\n"
              "Access Errors : 6\r\n"
              "Encrypted Files : 7\r\n"
              "Small Files (<512 bytes): 8\r\n"
              "Folder Errors: 9,000\r\n"
              "----------------------------------\r\n");
}

TEST_F(ReportTest, CopyFailuresAreTheLastLineWhenCopyingWasWanted) {
    state.counters.copyErrors = 1234;
    EXPECT_EQ(completionReport(state, "LAB7").find("unable to be copied"), std::string::npos);
    state.options.copy = true;
    const std::string report = completionReport(state, "LAB7");
    const std::string last = "----------------------------------\r\n1,234 : 1234 files were unable to be copied.\r\n";
    ASSERT_GT(report.size(), last.size());
    EXPECT_EQ(report.substr(report.size() - last.size()), last);
}

TEST_F(ReportTest, WithoutARecipientNothingIsSent) {
    for (const int index : {-1, 0}) {
        state.options.recipientIndex = index;
        state.options.recipient = "LAB9";
        sendCompletionReport(state, fake.surroundings, alerts);
    }
    EXPECT_TRUE(alerts.sent.empty());
}

TEST_F(ReportTest, TheReportGoesToTheRecipient) {
    state.options.recipientIndex = 1;
    state.options.recipient = "LAB9";
    sendCompletionReport(state, fake.surroundings, alerts);
    EXPECT_EQ(alerts.sent, std::vector<std::string>{"LAB9|1|File list complete for Job ID : 1234|0"});
    EXPECT_EQ(alerts.bodies.at(0), completionReport(state, "LAB7"));
    EXPECT_EQ(alerts.stateAtSend, AckState::Pending);
    EXPECT_EQ(alerts.waits, 1);
    EXPECT_FALSE(boardOf(state).busyPointer);
}

TEST_F(ReportTest, CopyFailuresMakeItAnAlert) {
    state.options.recipientIndex = 1;
    state.options.recipient = "LAB9";
    state.options.copy = true;
    state.counters.copyErrors = 1;
    sendCompletionReport(state, fake.surroundings, alerts);
    EXPECT_EQ(alerts.sent, std::vector<std::string>{"LAB9|1|File list complete for Job ID : 1234|1"});
}

TEST_F(ReportTest, AReportThatIsNotAcknowledgedIsTold) {
    state.options.recipientIndex = 1;
    state.options.recipient = "LAB9";
    alerts.answer = AckState::None;
    fake.dialogs.expectBox("File list complete", "File listing complete, but could not send notification to LAB9");
    sendCompletionReport(state, fake.surroundings, alerts);
    EXPECT_FALSE(boardOf(state).busyPointer);
}

TEST_F(ReportTest, ARecipientWhoseNameTurnsTextIsShownAsItIsAndAddressedAsItStands) {
    state.options.recipientIndex = 1;
    state.options.recipient = "9\u202EBAL";
    alerts.answer = AckState::None;
    fake.dialogs.expectBox("File list complete",
                           "File listing complete, but could not send notification to 9<U+202E>BAL");
    sendCompletionReport(state, fake.surroundings, alerts);
    ASSERT_EQ(alerts.sent.size(), 1U);
    EXPECT_TRUE(alerts.sent[0].starts_with("9\u202EBAL|")) << alerts.sent[0];
}

TEST_F(ReportTest, AStateThatIsStillPendingIsNotTold) {
    state.options.recipientIndex = 1;
    state.options.recipient = "LAB9";
    alerts.answer = AckState::Pending;
    sendCompletionReport(state, fake.surroundings, alerts);
    EXPECT_EQ(alerts.sent.size(), 1U);
}

TEST_F(ReportTest, ARecipientThatIsTheSenderIsTold) {
    state.options.recipientIndex = 2;
    state.options.recipient = "LAB7";
    fake.dialogs.expectBox("Error", "Recipient of message is the same as the sender !");
    sendCompletionReport(state, fake.surroundings, alerts);
    EXPECT_TRUE(alerts.sent.empty());
}

}  // namespace

}  // namespace quillon::test
