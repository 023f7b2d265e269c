// SPDX-License-Identifier: MIT
#include "messaging/messenger.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <random>
#include <thread>

#include <gmock/gmock.h>

#include "support/random_datagrams.h"

namespace quillon {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;
using std::chrono::milliseconds;

std::string alertBytes(const std::string& request, const std::string& flag = "0") {
    return "LAB7\xFF" + request + "\xFF" + "subject\xFF" + "body\xFF" + flag;
}

class MessengerTest : public testing::Test {
protected:
    std::vector<std::string> answered;
    std::vector<ReceivedAlert> shown;
    Messenger messenger{[this](const std::string& name) { answered.push_back(name); },
                        [this](const ReceivedAlert& alert) { shown.push_back(alert); }};
};

TEST_F(MessengerTest, AnAlertThatAsksIsShownAndAnsweredOnceToTheNameInIt) {
    EXPECT_EQ(messenger.take(alertBytes(" 1")), DatagramKind::Alert);
    EXPECT_THAT(answered, ElementsAre("LAB7"));
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown[0].subject.bytes, "subject");
    EXPECT_FALSE(shown[0].problem);
}

TEST_F(MessengerTest, AnAlertThatDoesNotAskIsShownAlone) {
    for (const char* request : {"0", "", "word", " 2"})
        EXPECT_EQ(messenger.take(alertBytes(request)), DatagramKind::Alert);
    EXPECT_TRUE(answered.empty());
    EXPECT_EQ(shown.size(), 4U);
}

TEST_F(MessengerTest, BothFormsOfTheRequestAreTheSame) {
    messenger.take(alertBytes(" 1"));
    messenger.take(alertBytes("1"));
    EXPECT_THAT(answered, ElementsAre("LAB7", "LAB7"));
}

TEST_F(MessengerTest, BadDatagramsAreCountedAndNeverAnswered) {
    const std::vector<std::string> bad{"",
                                       "text",
                                       "LAB7\xFF 1"s,
                                       "LAB7\xFF 1\xFFs\xFF"
                                       "b"s,
                                       alertBytes(" 1") + "\xFF",
                                       "\xFF 1\xFFs\xFF"
                                       "b\xFF"
                                       "0"s,
                                       "LAB7\xFF"
                                       "1\xFF"
                                       "acknowledged"s};
    for (const std::string& bytes : bad) EXPECT_EQ(messenger.take(bytes), DatagramKind::Bad) << bytes;
    EXPECT_TRUE(answered.empty());
    EXPECT_TRUE(shown.empty());
    EXPECT_EQ(messenger.counts().bad, bad.size());
}

TEST_F(MessengerTest, AnAcknowledgementIsCountedAndNeverAnswered) {
    EXPECT_EQ(messenger.take("DESK2\xFF"
                             "0\xFF"
                             "Acknowledged"s),
              DatagramKind::Acknowledgement);
    EXPECT_EQ(messenger.take("DESK2\xFF"
                             "1\xFF"
                             "Acknowledged"s),
              DatagramKind::Acknowledgement);
    EXPECT_TRUE(answered.empty());
    EXPECT_EQ(messenger.counts().acknowledgements, 2U);
}

TEST_F(MessengerTest, ProblemsAreCounted) {
    messenger.take(alertBytes("0", "1"));
    messenger.take(alertBytes("0", "0"));
    EXPECT_TRUE(shown[0].problem);
    EXPECT_FALSE(shown[1].problem);
    EXPECT_EQ(messenger.counts().alerts, 2U);
    EXPECT_EQ(messenger.counts().problems, 1U);
}

TEST_F(MessengerTest, RandomDatagramsNeverCrashAndAreAnsweredOnlyAsAlerts) {
    const int count = test::randomDatagramCount(50000);
    std::mt19937 random(5);
    for (int i = 0; i < count; ++i) {
        std::string bytes(random() % 40, '\0');
        for (char& c : bytes)
            c = random() % 3 == 0 ? '\xFF' : static_cast<char>(random() % 4 == 0 ? random() : '0' + random() % 3);
        const auto before = answered.size();
        const DatagramKind kind = messenger.take(bytes);
        if (answered.size() != before) {
            ASSERT_EQ(kind, DatagramKind::Alert);
            ASSERT_EQ(std::count(bytes.begin(), bytes.end(), '\xFF'), 4);
        }
        answered.clear();
        shown.clear();
    }
    const MessengerCounts& counts = messenger.counts();
    EXPECT_EQ(counts.alerts + counts.bad + counts.acknowledgements, static_cast<std::uint64_t>(count));
    EXPECT_GT(counts.alerts, 0U);
    EXPECT_GT(counts.bad, 0U);
}

ReceivedAlert alertOf(const std::string& sender, const std::string& subject, const std::string& body, bool problem) {
    return {PageText{sender}, true, PageText{subject}, PageText{body}, problem};
}

TEST(AlertText, ShowsTimeSenderMarkSubjectAndBody) {
    const auto alert = alertOf("LAB7", "15/11/2026 10:20:30\r\n Process error", "one\r\n\r\ntwo", true);
    EXPECT_EQ(alertText("15/11/2026 10:20:31", alert),
              "15/11/2026 10:20:31  LAB7  PROBLEM\n"
              "  15/11/2026 10:20:30 | Process error\n"
              "    one\n"
              "\n"
              "    two\n"
              "\n");
    EXPECT_EQ(alertText("T", alertOf("LAB7", "s", "b", false)), "T  LAB7\n  s\n    b\n\n");
}

TEST(AlertText, ControlCharactersCannotReachTheTerminal) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    const std::string text =
        alertText("T", alertOf(all, all, all, false)) + alertRecord("T", alertOf(all, all, all, false));
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        EXPECT_FALSE((byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F) << "byte " << int(byte);
        EXPECT_FALSE(byte == 0xC2 && static_cast<unsigned char>(text.at(i + 1)) < 0xA0) << "a C1 control character";
    }
}

TEST(AlertRecord, IsOneLineOfFiveFieldsWhateverTheTextsHold) {
    EXPECT_EQ(alertRecord("T", alertOf("LAB7", "a\r\n b", "one\r\n\r\ntwo\nthree", true)),
              "T\tLAB7\tproblem\ta | b\tone | two | three\n");
    EXPECT_EQ(alertRecord("T", alertOf("L\tB", "s", "b\t\x1B[2J", false)),
              "T\tL\uFFFD"
              "B\tmessage\ts\tb\uFFFD\uFFFD[2J\n");
}

TEST(AlertRecord, PageCharactersAreUtf8) {
    EXPECT_EQ(alertRecord("T", alertOf("LAB7",
                                       "\xDC"
                                       "bung",
                                       "5 \x80", false)),
              "T\tLAB7\tmessage\tÜbung\t5 €\n");
}

// Answers.

const HostAddress kSomewhere = *numericAddress("10.0.0.7");

struct Sent {
    std::mutex mutex;
    std::vector<HostAddress> to;
    std::vector<std::string> bytes;

    AnswerQueue::Send send() {
        return [this](const HostAddress& address, std::string_view text) -> Result<void> {
            const std::lock_guard lock(mutex);
            to.push_back(address);
            bytes.emplace_back(text);
            return {};
        };
    }
};

TEST(AnswerQueue, SendsOneAnswerForEachToTheAddressOfTheName) {
    Sent sent;
    AnswerQueue queue(
        "answer", [](const std::string&) -> Result<HostAddress> { return kSomewhere; }, sent.send());
    queue.answer("LAB7");
    queue.answer("LAB7");
    ASSERT_TRUE(queue.finish(milliseconds(5000)));
    EXPECT_THAT(sent.to, ElementsAre(kSomewhere, kSomewhere));
    EXPECT_THAT(sent.bytes, ElementsAre("answer", "answer"));
    EXPECT_EQ(queue.counts().sent, 2U);
}

TEST(AnswerQueue, AnUnknownNameGetsNoAnswer) {
    Sent sent;
    AnswerQueue queue(
        "answer", [](const std::string&) -> Result<HostAddress> { return failure(ErrorKind::NotFound, ""); },
        sent.send());
    queue.answer("LAB7");
    ASSERT_TRUE(queue.finish(milliseconds(5000)));
    EXPECT_TRUE(sent.to.empty());
    EXPECT_EQ(queue.counts().failed, 1U);
}

// Names that begin with "dead" are looked up until the gate opens.
struct Gate {
    std::mutex mutex;
    std::condition_variable changed;
    bool open = false;

    HostResolver resolver() {
        return [this](const std::string& name) -> Result<HostAddress> {
            std::unique_lock lock(mutex);
            if (name.substr(0, 4) == "dead")
                changed.wait(lock, [this] { return open; });
            return kSomewhere;
        };
    }
    void release() {
        const std::lock_guard lock(mutex);
        open = true;
        changed.notify_all();
    }
};

TEST(AnswerQueue, ADeadNameServerHoldsUpNoOtherAnswer) {
    Sent sent;
    Gate gate;
    AnswerQueue queue("answer", gate.resolver(), sent.send());
    for (int i = 0; i < 5; ++i) queue.answer("dead");
    queue.answer("LAB7");
    EXPECT_FALSE(queue.finish(milliseconds(200)));
    EXPECT_EQ(queue.counts().sent, 1U);
    gate.release();
    EXPECT_TRUE(queue.finish(milliseconds(5000)));
    EXPECT_EQ(queue.counts().sent, 6U);
}

TEST(AnswerQueue, AnAnswerThatComesTooLateIsNotSent) {
    Sent sent;
    Gate gate;
    AnswerQueue queue("answer", gate.resolver(), sent.send(), milliseconds(50));
    queue.answer("dead");
    EXPECT_FALSE(queue.finish(milliseconds(100)));
    gate.release();
    EXPECT_TRUE(queue.finish(milliseconds(5000)));
    EXPECT_TRUE(sent.to.empty());
    EXPECT_EQ(queue.counts().dropped, 1U);
}

TEST(AnswerQueue, AFloodIsBounded) {
    Sent sent;
    Gate gate;
    AnswerQueue queue("answer", gate.resolver(), sent.send());
    for (int i = 0; i < 5000; ++i) queue.answer("dead");
    EXPECT_GE(queue.counts().dropped, 3900U);
    gate.release();
    EXPECT_TRUE(queue.finish(milliseconds(10000)));
}

TEST(AnswerQueue, EndsWithoutWaitingForALookUpAndSendsNothingAfterwards) {
    auto sent = std::make_shared<Sent>();
    auto gate = std::make_shared<Gate>();
    auto looked = std::make_shared<std::atomic<bool>>(false);
    {
        AnswerQueue queue(
            "answer",
            [gate, looked](const std::string& name) {
                auto address = gate->resolver()(name);
                *looked = true;
                return address;
            },
            [sent](const HostAddress& address, std::string_view bytes) { return sent->send()(address, bytes); });
        queue.answer("dead");
        EXPECT_FALSE(queue.finish(milliseconds(50)));
    }
    gate->release();
    while (!*looked) std::this_thread::yield();
    const std::lock_guard lock(sent->mutex);
    EXPECT_TRUE(sent->to.empty());
}

}  // namespace
}  // namespace quillon
