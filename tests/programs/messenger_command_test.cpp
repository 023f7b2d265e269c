// SPDX-License-Identifier: MIT
// The messenger as a user sees it, against the exchange that sends to it. This computer is 127.0.0.1, the messenger's
// 127.0.0.2, so that both can hold the same port; the ports are the system's choice.
#include "programs/messenger_command.h"

#include <atomic>
#include <filesystem>
#include <future>
#include <random>
#include <sstream>
#include <thread>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "app/version.h"
#include "messaging/alert_exchange.h"
#include "messaging/messenger.h"
#include "platform/host.h"
#include "support/fake_surroundings.h"
#include "support/random_datagrams.h"
#include "support/temp_folder.h"

namespace quillon {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

Result<HostAddress> fixedNames(const std::string& name) {
    if (name == "LAB7")
        return *numericAddress("127.0.0.1");
    return failure(ErrorKind::NotFound, name + ": unknown");
}

std::int32_t freePort() {
    UdpSocket probe;
    EXPECT_TRUE(probe.bind(0));
    return probe.boundPort();
}

// The messenger on a thread of its own, from the moment it listens.
class RunningMessenger {
public:
    explicit RunningMessenger(std::vector<std::string> arguments) {
        thread_ = std::thread([this, arguments = std::move(arguments)] {
            const auto interrupts = [this] {
                if (!listening_.exchange(true))
                    started_.set_value();
                return stop_ ? 1 : 0;
            };
            status = runMessengerCommand(arguments, {out, err, interrupts, fixedNames, fixedNames});
        });
        EXPECT_EQ(started_.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
    }
    ~RunningMessenger() { end(); }
    void end() {
        stop_ = true;
        if (thread_.joinable())
            thread_.join();
    }

    std::ostringstream out;
    std::ostringstream err;
    int status = -1;

private:
    std::atomic<bool> stop_ = false;
    std::atomic<bool> listening_ = false;
    std::promise<void> started_;
    std::thread thread_;
};

class MessengerCommand : public testing::Test {
protected:
    MessengerCommand() {
        installation.settings.localPath.assign(pageFromPath(folder.path() / "local"));
        installation.settings.alertSourcePort = freePort();
        installation.settings.alertListenPort = freePort();
        installation.refreshPathVariables();
    }
    std::vector<std::string> arguments(std::vector<std::string> more = {}) const {
        std::vector<std::string> all{"--port", std::to_string(installation.settings.alertListenPort), "--address",
                                     "127.0.0.2"};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }
    bool send(const std::string& subjectText, const std::string& body, std::int16_t flag) {
        std::string subject = subjectText;
        return exchange.sendAlert("127.0.0.2", kAskForAcknowledgement, subject, body, flag);
    }
    void sendRaw(const std::string& bytes) {
        UdpSocket raw(fixedNames, *numericAddress("127.0.0.1"));
        raw.setRemotePort(installation.settings.alertListenPort);
        EXPECT_TRUE(raw.sendTo(*numericAddress("127.0.0.2"), bytes));
    }

    test::TempFolder folder;
    SystemClock clock;
    DateTexts dates{"C"};
    test::ScriptedDialogs dialogs;
    test::CountingLoop loop;
    Surroundings surroundings{clock, dates, dialogs, loop, "LAB7"};
    Installation installation{folder.path() / "app"};
    UdpSocket server{fixedNames, *numericAddress("127.0.0.1")};
    UdpSocket client{fixedNames, *numericAddress("127.0.0.1")};
    AlertExchange exchange{AlertScreen::SetupWizard,          server, client, installation, surroundings,
                           [] { return std::string("1234"); }};
};

TEST_F(MessengerCommand, PrintsStoresAndAcknowledgesAnAlert) {
    const std::string logFile = (folder.path() / "alerts.log").native();
    RunningMessenger messenger(arguments({"--log", logFile}));
    EXPECT_TRUE(send("Process error", "The disk\r\nis gone", 1));
    EXPECT_TRUE(send("File list 1234 complete and zipped.", "all is well", 0));
    messenger.end();
    EXPECT_EQ(messenger.status, 0);
    EXPECT_THAT(messenger.out.str(), HasSubstr("  LAB7  PROBLEM\n  Process error\n    The disk\n    is gone\n\n"));
    EXPECT_THAT(messenger.out.str(), HasSubstr("  LAB7\n  File list 1234 complete and zipped.\n    all is well\n\n"));
    EXPECT_THAT(messenger.err.str(),
                HasSubstr("2 alerts (1 problems), 2 acknowledged, 0 could not be acknowledged, 0 bad datagrams"));
    const std::string log = folder.read("alerts.log");
    EXPECT_THAT(log, HasSubstr("\tLAB7\tproblem\tProcess error\tThe disk | is gone\n"));
    EXPECT_THAT(log, HasSubstr("\tLAB7\tmessage\tFile list 1234 complete and zipped.\tall is well\n"));
}

TEST_F(MessengerCommand, AcknowledgesExactlyOnceInTheToldForm) {
    RunningMessenger messenger(arguments());
    ASSERT_TRUE(client.bind(installation.settings.alertListenPort));
    sendRaw(
        "LAB7\xFF 1\xFFs\xFF"
        "b\xFF"
        "0");
    ASSERT_TRUE(client.poll(std::chrono::milliseconds(10000)).arrived);
    EXPECT_EQ(client.getData(), hostName() +
                                    "\xFF"
                                    "0\xFF"
                                    "Acknowledged");
    messenger.end();
    EXPECT_FALSE(client.poll(std::chrono::milliseconds(0)).arrived) << "there is no second one";
}

TEST_F(MessengerCommand, BadDatagramsAndUnaskedAlertsGetNoAnswer) {
    RunningMessenger messenger(arguments());
    ASSERT_TRUE(client.bind(installation.settings.alertListenPort));
    for (const char* bytes : {"", "text", "LAB7\xFF 1\xFFs",
                              "LAB7\xFF 1\xFFs\xFF"
                              "b\xFF"
                              "0\xFF",
                              "LAB7\xFF"
                              "1\xFF"
                              "Acknowledged",
                              "LAB7\xFF"
                              "0\xFFs\xFF"
                              "b\xFF"
                              "0"})
        sendRaw(bytes);
    // The last one asks: its answer tells that all others have been dealt with.
    sendRaw(
        "LAB7\xFF"
        "1\xFFs\xFF"
        "b\xFF"
        "0");
    ASSERT_TRUE(client.poll(std::chrono::milliseconds(10000)).arrived);
    EXPECT_NE(client.getData(), "");
    messenger.end();
    EXPECT_FALSE(client.poll(std::chrono::milliseconds(0)).arrived);
    EXPECT_THAT(messenger.err.str(),
                HasSubstr("2 alerts (0 problems), 1 acknowledged, 0 could not be acknowledged, 4 bad datagrams"));
    EXPECT_THAT(messenger.err.str(), HasSubstr("1 acknowledgements for programs on this computer"));
}

TEST_F(MessengerCommand, ASenderThatCannotBeFoundIsShownAndGetsNoAnswer) {
    RunningMessenger messenger(arguments());
    ASSERT_TRUE(client.bind(installation.settings.alertListenPort));
    sendRaw(
        "NOBODY\xFF 1\xFFs\xFF"
        "b\xFF"
        "0");
    sendRaw(
        "LAB7\xFF 1\xFFs\xFF"
        "b\xFF"
        "0");
    ASSERT_TRUE(client.poll(std::chrono::milliseconds(10000)).arrived);
    messenger.end();
    EXPECT_THAT(messenger.out.str(), HasSubstr("  NOBODY\n"));
    EXPECT_THAT(messenger.err.str(), HasSubstr("2 alerts (0 problems), 1 acknowledged, 1 could not be acknowledged"));
}

// What the messenger has to say of datagrams, and how many it can answer.
struct Expected {
    MessengerCounts counts;
    int answers = 0;
    int unknown = 0;

    void take(const std::string& bytes) {
        const auto alert = decodeAlert(bytes);
        if (!alert) {
            ++(isAcknowledgement(bytes) ? counts.acknowledgements : counts.bad);
            return;
        }
        ++counts.alerts;
        if (alert->problem)
            ++counts.problems;
        if (alert->wantsAnswer)
            ++(alert->sender.bytes == "LAB7" ? answers : unknown);
    }
};

// The messenger reads in order: an answer to the alert behind a batch tells that the whole batch has been read, so that
// nothing is lost and every datagram has to show in the summary.
TEST_F(MessengerCommand, RandomDatagramsAreAllCountedAndThoseThatAskAreAnsweredOnce) {
    constexpr int kBatch = 50;
    const std::string asking =
        "LAB7\xFF 1\xFFs\xFF"
        "b\xFF"
        "0";
    RunningMessenger messenger(arguments());
    ASSERT_TRUE(client.bind(installation.settings.alertListenPort));
    UdpSocket raw(fixedNames, *numericAddress("127.0.0.1"));
    raw.setRemotePort(installation.settings.alertListenPort);
    Expected expected;
    int answered = 0;
    std::mt19937 random(20261115);
    for (int left = test::randomDatagramCount(5000); left > 0; left -= kBatch) {
        for (int i = 0; i <= kBatch; ++i) {
            const std::string bytes = i == kBatch ? asking : test::randomDatagram(random);
            ASSERT_TRUE(raw.sendTo(*numericAddress("127.0.0.2"), bytes));
            expected.take(bytes);
        }
        for (; answered < expected.answers; ++answered) {
            ASSERT_TRUE(client.poll(std::chrono::milliseconds(10000)).arrived);
            ASSERT_NE(client.getData(), "");
        }
    }
    messenger.end();
    EXPECT_FALSE(client.poll(std::chrono::milliseconds(0)).arrived) << "no alert is answered twice";
    EXPECT_THAT(messenger.err.str(),
                HasSubstr(fmt::format("\nquillon-messenger: {} alerts ({} problems), {} acknowledged, {} could not be "
                                      "acknowledged, {} bad datagrams\nquillon-messenger: {} acknowledgements for",
                                      expected.counts.alerts, expected.counts.problems, answered, expected.unknown,
                                      expected.counts.bad, expected.counts.acknowledgements)));
}

TEST_F(MessengerCommand, AnAlertThatCannotBeStoredIsToldOnceAndCounted) {
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "this computer has no /dev/full";
    RunningMessenger messenger(arguments({"--log", "/dev/full"}));
    EXPECT_TRUE(send("one", "shown and acknowledged all the same", 0));
    EXPECT_TRUE(send("two", "b", 0));
    messenger.end();
    EXPECT_EQ(messenger.status, 0);
    EXPECT_THAT(messenger.out.str(), HasSubstr("  two\n"));
    const std::string err = messenger.err.str();
    const auto told = err.find("an alert could not be stored: /dev/full: ");
    ASSERT_NE(told, std::string::npos) << err;
    EXPECT_EQ(err.find("an alert could not be stored: ", told + 1), std::string::npos) << err;
    EXPECT_THAT(err, HasSubstr("quillon-messenger: 2 alerts could not be stored\n"));
}

TEST_F(MessengerCommand, SaysWhenThePortIsTaken) {
    UdpSocket other(fixedNames, *numericAddress("127.0.0.2"));
    ASSERT_TRUE(other.bind(installation.settings.alertListenPort));
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runMessengerCommand(arguments(), {out, err}), 1);
    EXPECT_THAT(err.str(), HasSubstr("another program of this computer has it"));
}

TEST_F(MessengerCommand, SaysWhenTheLogCannotBeWritten) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runMessengerCommand(arguments({"--log", (folder.path() / "none" / "x.log").native()}), {out, err}), 1);
    EXPECT_THAT(err.str(), StartsWith("quillon-messenger: "));
}

TEST_F(MessengerCommand, WrongUsageIsStatusTwo) {
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--port", "0"},
                                                  {"--port", "65536"},
                                                  {"--port", "x"},
                                                  {"--nonsense"},
                                                  {"--log"},
                                                  {"--address", "desk2"}}) {
        std::ostringstream out;
        std::ostringstream err;
        EXPECT_EQ(runMessengerCommand(wrong, {out, err}), 2) << wrong[0];
        EXPECT_THAT(err.str(), StartsWith("quillon-messenger: "));
        EXPECT_EQ(out.str(), "");
    }
}

TEST_F(MessengerCommand, HelpAndVersion) {
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(runMessengerCommand({"--help"}, {out, err}), 0);
    for (const char* option : {"--port", "--address", "--log", "--notify", "--version"})
        EXPECT_THAT(out.str(), HasSubstr(option));
    std::ostringstream version;
    EXPECT_EQ(runMessengerCommand({"--version"}, {version, err}), 0);
    const auto [major, minor, revision] = programVersion();
    EXPECT_EQ(version.str(), fmt::format("quillon-messenger {}.{}.{}\n", major, minor, revision));
}

}  // namespace
}  // namespace quillon
