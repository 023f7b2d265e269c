// SPDX-License-Identifier: MIT
// What arrives during the wait, on either socket.
#include <gmock/gmock.h>

#include "messaging/exchange_fixture.h"
#include "support/random_datagrams.h"

namespace quillon {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;

class AlertArrival : public test::ExchangeFixture {
protected:
    /// Both sockets get their datagram in the first turn; an empty text sends none.
    bool sendWithArrivals(const std::string& atClient, const std::string& atServer) {
        around.loop.onTurn = [=, this](int turn) {
            around.clock.tick += 100;
            if (turn != 1)
                return;
            if (!atClient.empty())
                client.arrive(atClient);
            if (!atServer.empty())
                server.arrive(atServer);
        };
        exchange->setAckState(AckState::Pending);
        return send();
    }
};

TEST_F(AlertArrival, AnAcknowledgementEndsTheWaitAndClosesBothSockets) {
    EXPECT_TRUE(sendWithArrivals(test::kAck, ""));
    EXPECT_EQ(exchange->ackState(), AckState::Acknowledged);
    EXPECT_FALSE(client.isOpen());
    EXPECT_FALSE(server.isOpen());
    EXPECT_EQ(around.loop.turns, 1);
}

TEST_F(AlertArrival, AnyOtherDatagramEndsTheWaitAtOnceWithFalse) {
    const std::vector<std::pair<const char*, std::string>> strays{
        {"three fields",
         "DESK2\xFF"
         "0\xFF"
         "something"s},
        {"another case",
         "DESK2\xFF"
         "0\xFF"
         "ACKNOWLEDGED"s},
        {"a blank behind the word",
         "DESK2\xFF"
         "0\xFF"
         "Acknowledged "s},
        {"five fields",
         "DESK2\xFF 1\xFFsubject\xFF"
         "body\xFF"
         "0"s},
        {"no separator", "Acknowledged"s},
    };
    for (const auto& [name, bytes] : strays) {
        SCOPED_TRACE(name);
        around.loop.turns = 0;
        EXPECT_FALSE(sendWithArrivals(bytes, ""));
        EXPECT_EQ(exchange->ackState(), AckState::None) << "pending, too, becomes 0";
        EXPECT_EQ(around.loop.turns, 1);
        EXPECT_TRUE(exchange->messageArrived());
        EXPECT_TRUE(client.isOpen()) << "left bound until the next send";
    }
}

TEST_F(AlertArrival, AnAcknowledgementWithMoreFieldsCounts) {
    EXPECT_TRUE(
        sendWithArrivals("DESK2\xFF"
                         "0\xFF"
                         "Acknowledged\xFFmore"s,
                         ""));
}

TEST_F(AlertArrival, ADatagramOfTwoFieldsEndsItsHandlerAndTheWait) {
    EXPECT_FALSE(
        sendWithArrivals("DESK2\xFF"
                         "0"s,
                         ""));
    EXPECT_EQ(exchange->ackState(), AckState::None);
    EXPECT_TRUE(exchange->messageArrived());
}

TEST_F(AlertArrival, AnEmptyDatagramEndsTheWait) {
    around.loop.onTurn = [this](int) { client.arrive(""); };
    EXPECT_FALSE(send());
    EXPECT_EQ(around.loop.turns, 1);
}

TEST_F(AlertArrival, TheFirstOfTwoDatagramsDecides) {
    around.loop.onTurn = [this](int) {
        client.arrive("stray");
        client.arrive(test::kAck);
    };
    EXPECT_FALSE(send());
}

TEST_F(AlertArrival, AnArrivalOnTheSourcePortIsReadFromTheOtherSocket) {
    EXPECT_FALSE(sendWithArrivals("", test::kAck)) << "what reached the source port is never read";
    EXPECT_EQ(exchange->ackState(), AckState::None);
    EXPECT_TRUE(exchange->messageArrived());
    EXPECT_FALSE(server.isOpen());
    EXPECT_THAT(std::vector<std::string>(journal.end() - 2, journal.end()),
                ElementsAre("client.GetData", "server.Close"));
}

// The datagram for the listen port arrives between the look at the client and the look at the server.
class ServerArrival : public test::ExchangeFixture {
protected:
    bool sendWith(const std::string& atClient) {
        client.announces = false;
        around.loop.onTurn = [this, atClient](int turn) {
            around.clock.tick += 100;
            if (turn != 1)
                return;
            client.arrive(atClient);
            server.arrive("never read");
        };
        exchange->setAckState(AckState::Pending);
        return send();
    }
};

TEST_F(ServerArrival, AnswersTheComputerNamedInTheDatagram) {
    EXPECT_FALSE(
        sendWith("DESK9\xFF 1\xFFsubject\xFF"
                 "body\xFF"
                 "0"s));
    ASSERT_EQ(server.sent.size(), 2U);
    EXPECT_EQ(server.sent[1],
              "LAB7\xFF"
              "0\xFF"
              "Acknowledged"s);
    EXPECT_EQ(server.sentTo[1], "DESK9:12021 from 12020");
    EXPECT_EQ(exchange->ackState(), AckState::None);
    EXPECT_FALSE(server.isOpen());
    EXPECT_FALSE(client.isOpen());
}

TEST_F(ServerArrival, TheAnswerWaitsForItsNameToBeLookedUp) {
    server.lookupTurns = 3;
    around.clock.tick = 0;
    EXPECT_FALSE(
        sendWith("DESK9\xFF"
                 "1\xFFsubject"s));
    EXPECT_EQ(server.sent.size(), 1U) << "the alert itself was still being looked up and was dropped";
    EXPECT_EQ(server.sentTo[0], "DESK9:12021 from 12020");
}

TEST_F(ServerArrival, AnswersNobodyWhoDoesNotAsk) {
    for (const std::string& field : {"0"s, ""s, "word"s, " 2"s}) {
        server.sent.clear();
        around.loop.turns = 0;
        EXPECT_FALSE(sendWith("DESK9\xFF" + field + "\xFFsubject"));
        EXPECT_EQ(server.sent.size(), 1U) << field;
    }
}

TEST_F(ServerArrival, TheWordInFieldTwoIsAnAcknowledgement) {
    EXPECT_TRUE(sendWith(test::kAck));
    EXPECT_EQ(exchange->ackState(), AckState::Acknowledged);
    EXPECT_EQ(server.sent.size(), 1U);
    EXPECT_FALSE(client.isOpen());
}

TEST_F(ServerArrival, TurnsTheLoopOnce) {
    EXPECT_TRUE(sendWith(test::kAck));
    EXPECT_EQ(around.loop.turns, 2);
}

TEST_F(ServerArrival, ADatagramWithoutSeparatorLeavesPendingWhichCountsAsTrue) {
    EXPECT_TRUE(sendWith("text"));
    EXPECT_EQ(exchange->ackState(), AckState::Pending);
    EXPECT_TRUE(server.isOpen());
    EXPECT_TRUE(client.isOpen());
}

TEST_F(ServerArrival, ADatagramOfTwoFieldsIsAnsweredAndLeavesTheState) {
    EXPECT_TRUE(sendWith("DESK9\xFF 1"s));
    EXPECT_EQ(exchange->ackState(), AckState::Pending);
    EXPECT_EQ(server.sent.size(), 2U);
    EXPECT_TRUE(client.isOpen()) << "the last step of the handler is not reached";
}

TEST_F(ServerArrival, AnEmptyReadClosesTheServerAlone) {
    EXPECT_FALSE(sendWith(""));
    EXPECT_EQ(exchange->ackState(), AckState::None);
    EXPECT_FALSE(server.isOpen());
    EXPECT_TRUE(client.isOpen());
}

TEST_F(AlertArrival, NothingThatArrivesOutsideOfAWaitIsActedOn) {
    server.open();
    client.open();
    client.arrive(test::kAck);
    server.arrive(test::kAck);
    EXPECT_EQ(exchange->ackState(), AckState::None);
    EXPECT_FALSE(exchange->messageArrived());
    EXPECT_TRUE(journal.empty());
}

TEST_F(AlertArrival, WhilePendingTheCallersTurnsHearTheAnswer) {
    client.open();
    exchange->setAckState(AckState::Pending);
    arriveInTurn(5, client, test::kAck);
    exchange->turnWhilePending();
    EXPECT_EQ(around.loop.turns, 5);
    EXPECT_EQ(exchange->ackState(), AckState::Acknowledged);
}

TEST_F(AlertArrival, RandomDatagramsNeverCrashAndTheFirstOneDecides) {
    use(AlertScreen::SetupWizard);  // writes no log
    std::mt19937 random(20261115);
    int answered = 0;
    for (int left = test::randomDatagramCount(20000); left > 0;) {
        around.loop.turns = 0;
        std::string first;
        around.loop.onTurn = [&](int) {
            around.clock.tick += 1;
            first = test::randomDatagram(random);
            client.arrive(first);
            for (int more = 0; more < 3; ++more) {
                client.arrive(test::randomDatagram(random));
                server.arrive(test::randomDatagram(random));
            }
            left -= 7;
        };
        exchange->clearState();
        const bool result = send();
        ASSERT_EQ(result, test::isAnswer(first)) << testing::PrintToString(first);
        ASSERT_EQ(around.loop.turns, 1);
        answered += result ? 1 : 0;
    }
    EXPECT_GT(answered, 0) << "some of them are acknowledgements";
}

}  // namespace
}  // namespace quillon
