// SPDX-License-Identifier: MIT
// Sending: the datagram, the sockets, the wait and its end, and the record in the log.
#include <gmock/gmock.h>

#include "messaging/exchange_fixture.h"
#include "platform/folders.h"

namespace quillon {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;

class AlertExchangeSend : public test::ExchangeFixture {};

TEST_F(AlertExchangeSend, TheMainWindowSendsDatedSubjectAndBody) {
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send(1));
    EXPECT_THAT(server.sent, ElementsAre("LAB7\xFF 1\xFF"
                                         "15/11/2026 10:20:30\r\n subject\xFF"
                                         "15/11/2026 10:20:30\r\nbody\xFF"
                                         "1"s));
    EXPECT_EQ(subject, "15/11/2026 10:20:30\r\n subject") << "the caller's subject comes back with its date";
}

TEST_F(AlertExchangeSend, TheZipScreenSendsDatedSubjectAndBody) {
    use(AlertScreen::Zip);
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    EXPECT_THAT(server.sent, ElementsAre("LAB7\xFF 1\xFF"
                                         "15/11/2026 10:20:30\r\n subject\xFF"
                                         "15/11/2026 10:20:30\r\nbody\xFF"
                                         "0"s));
}

TEST_F(AlertExchangeSend, TheWizardSendsTheCallersTextsAlone) {
    use(AlertScreen::SetupWizard);
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    EXPECT_THAT(server.sent, ElementsAre("LAB7\xFF 1\xFFsubject\xFF"
                                         "body\xFF"
                                         "0"s));
    EXPECT_EQ(subject, "subject");
}

TEST_F(AlertExchangeSend, TheDatagramGoesFromTheSourcePortToTheListenPort) {
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    EXPECT_THAT(server.sentTo, ElementsAre("DESK2:12021 from 12020"));
}

TEST_F(AlertExchangeSend, ThePortsComeFromTheSettings) {
    installation.settings.alertSourcePort = 40001;
    installation.settings.alertListenPort = 40002;
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    EXPECT_THAT(server.sentTo, ElementsAre("DESK2:40002 from 40001"));
    EXPECT_EQ(client.localPort, 40002);
}

TEST_F(AlertExchangeSend, TheMainWindowsSocketsAreSetUpInOrder) {
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    EXPECT_THAT(journal,
                ElementsAre("server.RemoteHost=DESK2", "server.RemotePort=12021", "server.LocalPort=12020",
                            "client.RemoteHost=DESK2", "client.RemotePort=12020", "client.LocalPort=12020",
                            "client.Bind 12021", "server.SendData", "server.Close", "client.GetData", "client.Close"));
}

TEST_F(AlertExchangeSend, TheOtherScreensGiveTheClientThisComputerAndNoPort) {
    for (const AlertScreen screen : {AlertScreen::Zip, AlertScreen::SetupWizard}) {
        journal.clear();
        around.loop.turns = 0;
        use(screen);
        arriveInTurn(1, client, test::kAck);
        EXPECT_TRUE(send());
        EXPECT_THAT(journal, ElementsAre("server.RemoteHost=DESK2", "server.RemotePort=12021", "server.LocalPort=12020",
                                         "client.RemoteHost=LAB7", "client.LocalPort=12020", "client.Bind 12021",
                                         "server.SendData", "server.Close", "client.GetData", "client.Close"));
    }
}

TEST_F(AlertExchangeSend, TheClientIsBoundToTheListenPortWhateverItsLocalPortSays) {
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    EXPECT_EQ(client.localPort, 12021);
}

TEST_F(AlertExchangeSend, OpenSocketsAreClosedFirst) {
    server.open();
    client.open();
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    EXPECT_EQ(journal[0], "server.Close");
    EXPECT_EQ(journal[1], "client.Close");
    EXPECT_EQ(journal[2], "server.RemoteHost=DESK2");
}

TEST_F(AlertExchangeSend, ALateAnswerToAnEarlierAlertIsDroppedByTheNextSend) {
    tickPerTurn(1000);
    EXPECT_FALSE(send());
    client.arrive(test::kAck);
    EXPECT_FALSE(send()) << "the socket that held it was closed";
}

TEST_F(AlertExchangeSend, WithoutAnAnswerTheWaitTurnsForTenSecondsAndOneDatagramLeft) {
    tickPerTurn(1);
    exchange->setAckState(AckState::Pending);
    EXPECT_FALSE(send());
    EXPECT_EQ(exchange->ackState(), AckState::None);
    EXPECT_EQ(exchange->waitElapsed(), 10001);
    EXPECT_EQ(around.loop.turns, 10002) << "the elapsed time is looked at before each turn, from 0 to 10,001";
    EXPECT_EQ(server.sent.size(), 1U) << "there is no retry";
    EXPECT_FALSE(exchange->messageArrived());
}

TEST_F(AlertExchangeSend, AnAnswerSeenAt9999MillisecondsCounts) {
    arriveInTurn(3, client, test::kAck, 9999);
    EXPECT_TRUE(send());
    EXPECT_EQ(exchange->ackState(), AckState::Acknowledged);
}

TEST_F(AlertExchangeSend, AnAnswerSeenAt10000MillisecondsCountsAsNone) {
    arriveInTurn(3, client, test::kAck, 10000);
    EXPECT_FALSE(send());
    EXPECT_EQ(exchange->ackState(), AckState::None);
    EXPECT_TRUE(exchange->messageArrived());
}

TEST_F(AlertExchangeSend, TheWizardLeavesALateAcknowledgementInPlace) {
    use(AlertScreen::SetupWizard);
    arriveInTurn(3, client, test::kAck, 10000);
    EXPECT_TRUE(send());
    EXPECT_EQ(exchange->ackState(), AckState::Acknowledged);
}

TEST_F(AlertExchangeSend, OnTheWizardPendingSurvivesTheTimeOutAndCounts) {
    use(AlertScreen::SetupWizard);
    exchange->setAckState(AckState::Pending);
    tickPerTurn(2500);
    EXPECT_TRUE(send());
    EXPECT_EQ(exchange->ackState(), AckState::Pending);
}

TEST_F(AlertExchangeSend, AnArrivalInAnEarlierWaitDoesNotCutALaterOneShort) {
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    tickPerTurn(1000);
    exchange->setAckState(AckState::Pending);
    EXPECT_FALSE(send());
    EXPECT_GT(exchange->waitElapsed(), 9999);
}

TEST_F(AlertExchangeSend, AFailedBindRunsIntoTheFullWaitAndIsLogged) {
    client.bindError = FileError{ErrorKind::AddressInUse, "Address in use"};
    tickPerTurn(1000);
    EXPECT_FALSE(send());
    EXPECT_EQ(server.sent.size(), 1U) << "the datagram is sent nevertheless";
    EXPECT_GT(exchange->waitElapsed(), 9999);
    EXPECT_EQ(exchange->errorText(), "Address in use");
    EXPECT_FALSE(exchange->portConflict()) << "only the wizard remembers a conflict";
}

TEST_F(AlertExchangeSend, AFailedSendRunsIntoTheFullWait) {
    server.sendFailure = FileError{ErrorKind::PathAccess, "Network is unreachable"};
    tickPerTurn(1000);
    EXPECT_FALSE(send());
    EXPECT_GT(exchange->waitElapsed(), 9999);
    EXPECT_EQ(exchange->errorText(), "Network is unreachable");
}

TEST_F(AlertExchangeSend, AnUnknownNameIsToldDuringTheWaitAndTreatedLikeSilence) {
    server.lookupTurns = 5;
    server.lookupError = FileError{ErrorKind::NotFound, "DESK2: unknown"};
    tickPerTurn(1000);
    EXPECT_FALSE(send());
    EXPECT_GT(exchange->waitElapsed(), 9999);
    EXPECT_EQ(exchange->errorText(), "DESK2: unknown");
}

TEST_F(AlertExchangeSend, TheLoopTurnsWhileTheNameIsLookedUp) {
    server.lookupTurns = 7;
    around.loop.onTurn = [this](int turn) {
        EXPECT_EQ(server.sent.size(), turn <= 7 ? 0U : 1U);
        if (turn == 9)
            client.arrive(test::kAck);
    };
    EXPECT_TRUE(send());
    EXPECT_EQ(around.loop.turns, 9);
}

TEST_F(AlertExchangeSend, TheLogLineOfAnAcknowledgedAlert) {
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    EXPECT_EQ(log(), "15/11/2026 10:20:30;Logs:\\1234\\15-11-2026\\LAB7\\DESK2,subject,10:20:30,0, 1,body\r\n");
}

TEST_F(AlertExchangeSend, TheLogLineOfAFailedAlertHoldsTheErrorAndABlankZero) {
    use(AlertScreen::Zip);
    client.bindError = FileError{ErrorKind::AddressInUse, "Address in use"};
    tickPerTurn(5001);
    EXPECT_FALSE(send());
    EXPECT_EQ(log(),
              "15/11/2026 10:20:30;Logs:\\1234\\15-11-2026\\LAB7\\DESK2,subject,10:20:30,Address in use, 0,body\r\n");
}

TEST_F(AlertExchangeSend, ABodyOfManyLinesIsOneRecordWithCharacter253) {
    arriveInTurn(1, client, test::kAck);
    subject = "s";
    EXPECT_TRUE(exchange->sendAlert("DESK2", 1, subject, "one, two\r\nthree\r\n", 0));
    EXPECT_EQ(log(),
              "15/11/2026 10:20:30;Logs:\\1234\\15-11-2026\\LAB7\\DESK2,s,10:20:30,0, 1,one, two\xFDthree\xFD\r\n");
}

TEST_F(AlertExchangeSend, TheWizardWritesNoLog) {
    use(AlertScreen::SetupWizard);
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    EXPECT_FALSE(pathExists(folder.path() / "local"));
}

TEST_F(AlertExchangeSend, AnErrorOfAnEarlierSendIsForgotten) {
    client.bindError = FileError{ErrorKind::AddressInUse, "Address in use"};
    tickPerTurn(5001);
    EXPECT_FALSE(send());
    client.bindError.reset();
    around.loop.turns = 0;
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send());
    EXPECT_EQ(exchange->errorText(), "0");
}

TEST_F(AlertExchangeSend, TheCallersTurnsEndWhenTheStateIsKnownAndAfter1001) {
    exchange->setAckState(AckState::Acknowledged);
    exchange->turnWhilePending();
    EXPECT_EQ(around.loop.turns, 0);
    exchange->setAckState(AckState::Pending);
    exchange->turnWhilePending();
    EXPECT_EQ(around.loop.turns, 1001);
    EXPECT_EQ(exchange->ackState(), AckState::Pending);
}

TEST_F(AlertExchangeSend, ThisComputerIsKnownInAnyCaseAndWithBlanks) {
    EXPECT_TRUE(exchange->isThisComputer("lab7"));
    EXPECT_TRUE(exchange->isThisComputer("LAB7"));
    EXPECT_FALSE(exchange->isThisComputer("LAB7 ")) << "blanks are cut from the host name alone";
    EXPECT_FALSE(exchange->isThisComputer("LAB70"));
    around.surroundings.hostName = "Übung ";
    EXPECT_TRUE(exchange->isThisComputer("übung"));
}

// The exchanges of one process have one pair of ports.

class SharedPorts : public AlertExchangeSend {
protected:
    SharedPorts() {
        exchange = std::make_unique<AlertExchange>(
            AlertScreen::Main, server, client, installation, around.surroundings, [] { return std::string(); }, &ports);
    }
    ~SharedPorts() override { exchange.reset(); }
    bool sendByZip() {
        std::string text = "subject";
        return zip.sendAlert("DESK2", kAskForAcknowledgement, text, "body", 0);
    }

    AlertPorts ports;
    test::ScriptedSocket zipServer{"zip server", journal};
    test::ScriptedSocket zipClient{"zip client", journal};
    AlertExchange zip{AlertScreen::Zip,
                      zipServer,
                      zipClient,
                      installation,
                      around.surroundings,
                      [] { return std::string(); },
                      &ports};
};

TEST_F(SharedPorts, ASendClosesWhatAnotherScreensUnansweredAlertLeftBound) {
    tickPerTurn(5001);
    EXPECT_FALSE(send());
    EXPECT_TRUE(client.isOpen()) << "left bound until the next send";
    EXPECT_FALSE(sendByZip());
    EXPECT_FALSE(client.isOpen());
    EXPECT_FALSE(server.isOpen());
    EXPECT_TRUE(zipClient.isOpen());
}

TEST_F(SharedPorts, AScreenThatWaitsForItsAnswerKeepsItsSockets) {
    bool kept = false;
    around.loop.onTurn = [&](int turn) {
        around.clock.tick += 4000;
        if (turn == 1) {
            EXPECT_FALSE(sendByZip());
            kept = client.isOpen();
        }
    };
    EXPECT_FALSE(send());
    EXPECT_TRUE(kept);
}

// The wizard's port conflict.

class WizardConflict : public AlertExchangeSend {
protected:
    WizardConflict() {
        use(AlertScreen::SetupWizard);
        client.bindError = FileError{ErrorKind::AddressInUse, "Address in use"};
    }
    void expectWarning() {
        around.dialogs.expectBox("Warning",
                                 "The return message may have been intercepted by ZOV - Messenger or another "
                                 "application set to use the same port.",
                                 BoxAnswer::Ok, BoxStyle::Information);
    }
};

TEST_F(WizardConflict, WarnsSkipsTheWaitAndCountsAsAcknowledged) {
    expectWarning();
    EXPECT_TRUE(send());
    EXPECT_EQ(around.loop.turns, 0);
    EXPECT_EQ(exchange->waitElapsed(), 9999);
    EXPECT_EQ(exchange->ackState(), AckState::Acknowledged);
    EXPECT_EQ(exchange->errorText(), "Address in use");
    EXPECT_EQ(server.sent.size(), 1U);
}

TEST_F(WizardConflict, AnAlertWhoseReceiverIsLookedUpLeavesAheadOfTheWarning) {
    server.lookupTurns = 3;
    expectWarning();
    EXPECT_TRUE(send());
    EXPECT_EQ(server.sent.size(), 1U) << "a recipient by name is sent to, like one by number";
    EXPECT_EQ(exchange->waitElapsed(), 9999) << "and no answer is waited for";
}

TEST_F(WizardConflict, KeepsWarningForAsLongAsTheScreenLives) {
    expectWarning();
    EXPECT_TRUE(send());
    client.bindError.reset();
    expectWarning();
    EXPECT_TRUE(send());
    use(AlertScreen::SetupWizard);
    around.loop.turns = 0;
    arriveInTurn(1, client, test::kAck);
    EXPECT_TRUE(send()) << "a new screen starts without a conflict";
}

TEST_F(WizardConflict, IsRememberedWhenTheSourcePortIsTakenToo) {
    client.bindError.reset();
    server.sendFailure = FileError{ErrorKind::AddressInUse, "Address in use"};
    expectWarning();
    EXPECT_TRUE(send());
}

TEST_F(WizardConflict, AnotherErrorIsNone) {
    client.bindError = FileError{ErrorKind::PermissionDenied, "Permission denied"};
    tickPerTurn(5001);
    EXPECT_FALSE(send());
    EXPECT_FALSE(exchange->portConflict());
    EXPECT_EQ(exchange->errorText(), "Permission denied");
}

}  // namespace
}  // namespace quillon
