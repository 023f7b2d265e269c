// SPDX-License-Identifier: MIT
#include "messaging/messenger.h"

#include <random>

#include <gmock/gmock.h>

#include "support/random_datagrams.h"

namespace quillon {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;

std::string alertBytes(const std::string& request, const std::string& flag = "0") {
    return "LAB7\xFF" + request + "\xFF" + "subject\xFF" + "body\xFF" + flag;
}

class MessengerTest : public testing::Test {
protected:
    std::vector<std::string> answered;
    std::vector<ReceivedAlert> shown;
    std::vector<std::string> order;
    Messenger messenger{[this](const ReceivedAlert& /*alert*/) { order.emplace_back("stored"); },
                        [this](const std::string& name) {
                            order.emplace_back("answered");
                            answered.push_back(name);
                        },
                        [this](const ReceivedAlert& alert) {
                            order.emplace_back("shown");
                            shown.push_back(alert);
                        }};
};

TEST_F(MessengerTest, AnAlertThatAsksIsShownAndAnsweredOnceToTheNameInIt) {
    EXPECT_EQ(messenger.take(alertBytes(" 1")), DatagramKind::Alert);
    EXPECT_THAT(answered, ElementsAre("LAB7"));
    ASSERT_EQ(shown.size(), 1U);
    EXPECT_EQ(shown[0].subject.bytes, "subject");
    EXPECT_FALSE(shown[0].problem);
}

TEST_F(MessengerTest, AnAlertIsStoredBeforeItIsAnsweredAndShownLast) {
    messenger.take(alertBytes(" 1"));
    EXPECT_THAT(order, ElementsAre("stored", "answered", "shown"));
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

TEST(AlertText, LongTextsAreCut) {
    const auto cut = shortened(alertOf(std::string(65, 's'), std::string(500, 'u'), std::string(60000, '\x01'), true));
    EXPECT_EQ(cut.sender.bytes, std::string(64, 's') + " [...]");
    EXPECT_EQ(cut.subject.bytes, std::string(500, 'u'));
    EXPECT_TRUE(cut.problem);
    EXPECT_LT(alertRecord("T", cut).size(), 25'000U) << "a control character becomes three bytes";
}

TEST(AlertRate, OneComputerHasSixtyAlertsAMinuteWhateverTheOthersSend) {
    AlertRate rate;
    const Moment start{};
    const HostAddress one = *numericAddress("10.0.0.1");
    for (std::size_t i = 0; i < kMostAlertsAMinute; ++i) EXPECT_TRUE(rate.allows(one, start));
    EXPECT_FALSE(rate.allows(one, start + std::chrono::seconds(59)));
    EXPECT_TRUE(rate.allows(*numericAddress("10.0.0.2"), start));
    EXPECT_TRUE(rate.allows(one, start + std::chrono::seconds(60)));
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

}  // namespace
}  // namespace quillon
