// SPDX-License-Identifier: MIT
#include "messaging/recipient_probe.h"

#include <gmock/gmock.h>

#include "messaging/exchange_fixture.h"
#include "messaging/recorded_recipients.h"
#include "platform/folders.h"

namespace quillon {
namespace {

using testing::ElementsAre;

class RecipientProbe : public test::ExchangeFixture {
protected:
    RecipientProbe() {
        std::filesystem::create_directories(folder.path() / "app");
        installation.settings.alertRecipient.assign(toPage("OLD1"));
        installation.settings.zipRecipient.assign(toPage("OLD2"));
    }
    void use(AlertScreen chosen) {
        screen = chosen;
        ExchangeFixture::use(chosen);
    }
    void run(const std::string& name, RecipientField field = RecipientField::None) {
        host.box.items = {"Query", name};
        host.box.choose(1);
        testRecipient(field, *exchange, installation, around.surroundings, host.screen(screen));
    }
    void answer() { arriveInTurn(1, client, test::kAck); }
    void expectNoConnection(const std::string& name) {
        around.dialogs.expectBox(
            "Communication error",
            "Unable to connect to computer " + name +
                "\r\nThe problem is one of the following\r\n\r\n1 The computer is turned off.\r\n2 "
                "The ZOV Messaging software is not installed on the remote computer.\r\n3 The "
                "Remote computer is listening on the wrong port.\r\n4 The Remote computer's "
                "firewall is blocking communication.\r\n5 This computer's firewall is not "
                "allowing messages to be sent.\r\n",
            BoxAnswer::Ok, BoxStyle::Warning);
    }
    void expectSaveQuestion(BoxAnswer reply) {
        around.dialogs.expectBox("Save as default?",
                                 "Message sent and acknowledgement received. Do you want to save DESK2 to receive all "
                                 "future messages from this computer ?",
                                 reply, BoxStyle::Question, BoxButtons::YesNo);
    }
    std::string stored(const FixedText<kSettingsTextBytes>& field) const { return field.trimmed().bytes; }
    AppSettings saved() const { return decodeSettings(folder.read("app/settings.dat")); }
    bool isSaved() const { return pathExists(folder.path() / "app/settings.dat"); }

    test::RecordedRecipients host;
    AlertScreen screen = AlertScreen::Main;
};

// The told text stays; what is known goes to the log and behind the button.
TEST_F(RecipientProbe, TheKnownCauseOfSilenceIsToldApart) {
    const auto cause = [this] {
        expectNoConnection("DESK2");
        run("DESK2");
        return host.logged.empty() ? std::string() : host.logged.back();
    };
    tickPerTurn(5001);
    EXPECT_EQ(cause(), "No answer from DESK2 : no answer came within 10 seconds");
    EXPECT_EQ(around.dialogs.lastDetails(), "no answer came within 10 seconds");
    client.bindError = FileError{ErrorKind::AddressInUse, "UDP port 12021: Address already in use"};
    EXPECT_EQ(cause(),
              "No answer from DESK2 : another program of this computer has the port, and the answer with it: UDP port "
              "12021: Address already in use");
    client.bindError.reset();
    server.sendFailure = FileError{ErrorKind::NotFound, "DESK2: Name or service not known"};
    EXPECT_EQ(cause(), "No answer from DESK2 : this computer does not know the name: DESK2: Name or service not known");
    server.sendFailure.reset();
    around.loop.onTurn = [this](int) { client.arrive("something else"); };
    EXPECT_EQ(cause(), "No answer from DESK2 : what came back was no acknowledgement");
}

// Names of computers come from the network.
TEST_F(RecipientProbe, ASilentNameThatTurnsTextIsShownAsItIs) {
    tickPerTurn(5001);
    expectNoConnection("2<U+202E>KSED");
    run("2\u202EKSED");
    EXPECT_TRUE(host.logged.back().starts_with("No answer from 2<U+202E>KSED : ")) << host.logged.back();
}

TEST_F(RecipientProbe, ANameThatTurnsTextIsShownAsItIsAndStoredAsItStands) {
    answer();
    around.dialogs.expectBox("Save as default?",
                             "Message sent and acknowledgement received. Do you want to save 2<U+202E>KSED to receive "
                             "all future messages from this computer ?",
                             BoxAnswer::Yes);
    run("2\u202EKSED", RecipientField::Alert);
    EXPECT_EQ(stored(installation.settings.alertRecipient), toPage("2\u202EKSED").bytes);
}

TEST_F(RecipientProbe, SendsTheTestTexts) {
    use(AlertScreen::SetupWizard);
    answer();
    expectSaveQuestion(BoxAnswer::No);
    run("DESK2", RecipientField::Alert);
    ASSERT_EQ(server.sent.size(), 1U);
    EXPECT_EQ(server.sent[0],
              "LAB7\xFF 1\xFFTest from quillon system\xFF"
              "Future messages can be viewed here.\xFF"
              "0");
}

TEST_F(RecipientProbe, TheMainWindowDisablesItsButtonAndShowsTheHourglass) {
    answer();
    expectSaveQuestion(BoxAnswer::No);
    run("DESK2");
    EXPECT_THAT(host.steps, ElementsAre("disable", "hourglass", "pointer", "enable"));
}

TEST_F(RecipientProbe, TheZipScreenLeavesItsButtonUsableMeanwhile) {
    use(AlertScreen::Zip);
    answer();
    expectSaveQuestion(BoxAnswer::No);
    run("DESK2", kZipScreenRecipient);
    EXPECT_THAT(host.steps, ElementsAre("hourglass", "pointer"));
    EXPECT_TRUE(host.box.testEnabled);
}

TEST_F(RecipientProbe, TheWizardClosesItsSocketsAndShowsAStatus) {
    use(AlertScreen::SetupWizard);
    client.open();
    server.open();
    answer();
    expectSaveQuestion(BoxAnswer::No);
    run("DESK2", RecipientField::Alert);
    EXPECT_THAT(host.steps, ElementsAre("status \"Testing network messaging, please wait ... \"", "disable",
                                        "hourglass", "pointer", "enable", "status \"\""));
    EXPECT_EQ(journal[0], "server.Close");
    EXPECT_EQ(journal[1], "client.Close");
}

TEST_F(RecipientProbe, SilenceIsToldWithTheFiveReasons) {
    for (const AlertScreen one : {AlertScreen::Main, AlertScreen::Zip, AlertScreen::SetupWizard}) {
        use(one);
        tickPerTurn(1000);
        expectNoConnection("DESK2");
        run("DESK2");
    }
    EXPECT_FALSE(isSaved());
}

TEST_F(RecipientProbe, AnOlderStateIsClearedFirst) {
    use(AlertScreen::SetupWizard);
    exchange->setAckState(AckState::Pending);
    tickPerTurn(1000);
    expectNoConnection("DESK2");
    run("DESK2");
}

TEST_F(RecipientProbe, ThisComputerIsRefusedOnTheZipScreenAndTheWizard) {
    for (const AlertScreen one : {AlertScreen::Zip, AlertScreen::SetupWizard}) {
        use(one);
        around.dialogs.expectBox("UDP Conflict", "Unable to send messages to computer with same name.", BoxAnswer::Ok,
                                 BoxStyle::Plain);
        run("lab7");
    }
    EXPECT_TRUE(server.sent.empty());
    EXPECT_EQ(host.steps.back(), "status \"\"");
    EXPECT_EQ(*(host.steps.end() - 2), "enable");
}

TEST_F(RecipientProbe, TheMainWindowSendsToThisComputerAndHearsItselfInVain) {
    around.loop.onTurn = [this](int turn) {
        if (turn == 1)
            client.arrive(server.sent.at(0));
    };
    expectNoConnection("LAB7");
    run("LAB7");
    EXPECT_EQ(around.loop.turns, 1) << "its own datagram ends the wait at once";
}

TEST_F(RecipientProbe, NoKeepsEverything) {
    answer();
    expectSaveQuestion(BoxAnswer::No);
    run("DESK2", RecipientField::Alert);
    EXPECT_EQ(stored(installation.settings.alertRecipient), "OLD1");
    EXPECT_FALSE(isSaved());
}

TEST_F(RecipientProbe, TheMainWindowSavesWithoutAChange) {
    answer();
    expectSaveQuestion(BoxAnswer::Yes);
    run("DESK2", RecipientField::None);
    EXPECT_EQ(stored(saved().alertRecipient), "OLD1");
    EXPECT_EQ(stored(saved().zipRecipient), "OLD2");
}

TEST_F(RecipientProbe, TheZipScreenStoresTheRecipientOfTheMainWindow) {
    use(AlertScreen::Zip);
    answer();
    expectSaveQuestion(BoxAnswer::Yes);
    run("DESK2", kZipScreenRecipient);
    EXPECT_EQ(stored(saved().alertRecipient), "DESK2");
    EXPECT_EQ(stored(saved().zipRecipient), "OLD2");
}

TEST_F(RecipientProbe, TheWizardsSecondBoxStoresTheZipRecipient) {
    use(AlertScreen::SetupWizard);
    answer();
    expectSaveQuestion(BoxAnswer::Yes);
    run("DESK2", RecipientField::Zip);
    EXPECT_EQ(stored(saved().alertRecipient), "OLD1");
    EXPECT_EQ(stored(saved().zipRecipient), "DESK2");
}

TEST_F(RecipientProbe, WithTheMessengerOnThisComputerTheWizardWarnsAndAsksToSave) {
    use(AlertScreen::SetupWizard);
    client.bindError = FileError{ErrorKind::AddressInUse, "Address in use"};
    around.dialogs.expectBox("Warning",
                             "The return message may have been intercepted by ZOV - Messenger or another application "
                             "set to use the same port.",
                             BoxAnswer::Ok, BoxStyle::Information);
    around.dialogs.expectBox("Save as default?",
                             "Do you want to save DESK2 to receive all future messages from this computer ?",
                             BoxAnswer::Yes, BoxStyle::Question);
    run("DESK2", RecipientField::Alert);
    EXPECT_EQ(stored(saved().alertRecipient), "DESK2");
}

TEST_F(RecipientProbe, WithTheMessengerOnThisComputerTheOtherScreensTellACommunicationError) {
    for (const AlertScreen one : {AlertScreen::Main, AlertScreen::Zip}) {
        use(one);
        client.bindError = FileError{ErrorKind::AddressInUse, "Address in use"};
        tickPerTurn(1000);
        expectNoConnection("DESK2");
        run("DESK2");
    }
}

// Something on the source port ended the wait and left the state as it was.
TEST_F(RecipientProbe, ATestThatWasSentButNotAnsweredTellsTheErrorOnTheZipScreenAndTheWizard) {
    for (const AlertScreen one : {AlertScreen::Main, AlertScreen::Zip, AlertScreen::SetupWizard}) {
        use(one);
        client.announces = false;
        around.loop.turns = 0;
        around.loop.onTurn = [this](int turn) {
            if (turn != 1)
                return;
            exchange->setAckState(AckState::Pending);
            client.arrive("text");
            server.arrive("never read");
        };
        if (one != AlertScreen::Main) {
            around.dialogs.expectBox(
                "Error",
                "Unable to send test message. The system returned the following error code : " +
                    std::string(one == AlertScreen::Zip ? "0" : "") +
                    "\r\nIf this system is running the ZOV-Messenger, then this machine will be unable to send "
                    "messages "
                    "as the ports it needs to send data are listening for data coming from other machines.",
                BoxAnswer::Ok, BoxStyle::Warning);
        }
        run("DESK2");
    }
}

}  // namespace
}  // namespace quillon
