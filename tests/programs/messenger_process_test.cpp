// SPDX-License-Identifier: MIT
// The program quillon-messenger itself, as a process. QUILLON_MESSENGER is its path.
#include <algorithm>
#include <csignal>
#include <filesystem>
#include <utility>

#include <gmock/gmock.h>
#include <poll.h>

#include "platform/datagram_socket.h"
#include "programs/child_process.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class MessengerProcess : public testing::Test {
protected:
    MessengerProcess() {
        UdpSocket probe;
        EXPECT_TRUE(probe.bind(0));
        port = std::to_string(probe.boundPort());
    }
    void start(std::vector<std::string> more = {}) {
        more.insert(more.begin(), {QUILLON_MESSENGER, "--address", "127.0.0.1", "--port", port});
        messenger.start(more, (folder / "output").native());
    }

    TempFolder folder;
    std::string port;
    ChildProcess messenger;
};

TEST_F(MessengerProcess, CtrlCAndTheServiceManagerEndItWithTheSummary) {
    for (const int signal : {SIGINT, SIGTERM}) {
        start({"--log", (folder / "alerts.log").native()});
        ASSERT_TRUE(messenger.readUntil("quillon-messenger: listening on UDP port " + port + "; Ctrl-C ends\n"));
        ::kill(messenger.id, signal);
        EXPECT_EQ(messenger.finish(), 0) << signal;
        EXPECT_THAT(messenger.said, EndsWith("quillon-messenger: 0 alerts (0 problems), 0 acknowledged, 0 could not be "
                                             "acknowledged, 0 bad datagrams\n"));
        EXPECT_TRUE(std::filesystem::exists(folder / "alerts.log")) << "what cannot be stored is known at the start";
    }
}

// A reader that does not read, and then goes away: alerts are stored and acknowledged all the same.
TEST_F(MessengerProcess, AReaderThatDoesNotReadOrGoesAwayCostsNoAcknowledgement) {
    test::makeFifo(folder / "output");
    int reader = ::open((folder / "output").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    start({"--log", (folder / "alerts.log").native()});
    ASSERT_TRUE(messenger.readUntil("Ctrl-C ends\n"));
    const HostAddress asker = *numericAddress("127.0.0.3");
    UdpSocket client(resolveHost, asker);
    ASSERT_TRUE(client.bind(std::stoi(port)));
    UdpSocket sender(resolveHost, asker);
    sender.setRemotePort(std::stoi(port));
    const std::string alert = "127.0.0.3\xFF 1\xFFs\xFF" + std::string(8000, 'x') + "\xFF" + "0";
    for (int i = 0; i < 24; ++i) {  // three pipes full
        if (i == 16)
            ::close(std::exchange(reader, -1));
        ASSERT_TRUE(sender.sendTo(*numericAddress("127.0.0.1"), alert));
        ASSERT_TRUE(client.poll(std::chrono::milliseconds(10000)).arrived) << i;
        EXPECT_NE(client.getData(), "");
    }
    ::kill(messenger.id, SIGINT);
    EXPECT_EQ(messenger.finish(), 0);
    EXPECT_THAT(messenger.said, HasSubstr("24 alerts (0 problems), 24 acknowledged"));
    EXPECT_THAT(messenger.said, HasSubstr("alerts were not shown, as nobody read them"));
    const std::string log = folder.read("alerts.log");
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 24);
}

// The desktop's program, which hands its last word to the test.
TEST_F(MessengerProcess, ABubbleShowsTheBeginningOfALongTextAndTheNextOneAllTheSame) {
    folder.write("bin/notify-send", "#!/bin/sh\nprintf '%s\\0' \"$5\" >'" + (folder / "bubbles").native() + "'\n");
    std::filesystem::permissions(folder / "bin/notify-send", std::filesystem::perms::owner_all);
    test::makeFifo(folder / "bubbles");
    const int bubbles = ::open((folder / "bubbles").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(bubbles, 0);
    messenger.start({"/usr/bin/env", "PATH=" + (folder / "bin").native() + ":/usr/bin:/bin", QUILLON_MESSENGER,
                     "--notify", "--address", "127.0.0.1", "--port", port},
                    (folder / "output").native());
    ASSERT_TRUE(messenger.readUntil("Ctrl-C ends\n"));
    UdpSocket sender(resolveHost, *numericAddress("127.0.0.3"));
    sender.setRemotePort(std::stoi(port));
    const auto bubbleOf = [&](const std::string& body) {
        EXPECT_TRUE(sender.sendTo(*numericAddress("127.0.0.1"), "127.0.0.3\xFF 0\xFFs\xFF" + body + "\xFF" + "0"));
        std::string text;
        ::pollfd ready{bubbles, POLLIN, 0};
        for (char c = 'x'; ::poll(&ready, 1, 20000) == 1 && ::read(bubbles, &c, 1) == 1 && c != '\0';) text += c;
        return text;
    };
    EXPECT_EQ(bubbleOf(std::string(60'000, 'x')), std::string(800, 'x') + " [...]\n");
    EXPECT_EQ(bubbleOf("short"), "short\n");
    ::close(bubbles);
    ::kill(messenger.id, SIGINT);
    EXPECT_EQ(messenger.finish(), 0);
}

// A log that may grow no further costs rows of the log and no alert.
TEST_F(MessengerProcess, ALogThatMayGrowNoFurtherEndsNothing) {
    messenger.start({"/bin/sh", "-c", "ulimit -f 8; exec \"$0\" \"$@\"", QUILLON_MESSENGER, "--address", "127.0.0.1",
                     "--port", port, "--log", (folder / "alerts.log").native()});
    ASSERT_TRUE(messenger.readUntil("Ctrl-C ends\n"));
    const HostAddress asker = *numericAddress("127.0.0.3");
    UdpSocket client(resolveHost, asker);
    ASSERT_TRUE(client.bind(std::stoi(port)));
    UdpSocket sender(resolveHost, asker);
    sender.setRemotePort(std::stoi(port));
    const std::string alert = "127.0.0.3\xFF 1\xFFs\xFF" + std::string(3000, 'x') + "\xFF" + "0";
    for (int i = 0; i < 4; ++i) {
        ASSERT_TRUE(sender.sendTo(*numericAddress("127.0.0.1"), alert));
        ASSERT_TRUE(client.poll(std::chrono::milliseconds(10000)).arrived) << i;
        EXPECT_NE(client.getData(), "");
    }
    ::kill(messenger.id, SIGINT);
    EXPECT_EQ(messenger.finish(), 0) << messenger.said;
    EXPECT_THAT(messenger.said, HasSubstr("4 alerts (0 problems), 4 acknowledged"));
    EXPECT_THAT(messenger.said, HasSubstr("alerts.log: File too large"));
}

TEST_F(MessengerProcess, ATakenPortIsStatusOne) {
    UdpSocket other;
    ASSERT_TRUE(other.bind(std::stoi(port)));
    start();
    EXPECT_EQ(messenger.finish(), 1);
    EXPECT_THAT(messenger.said, HasSubstr("UDP port " + port));
    EXPECT_THAT(messenger.said, EndsWith(" (another program of this computer has it)\n"));
}

TEST_F(MessengerProcess, HelpIsStatusZeroAndNonsenseTwo) {
    start({"--help"});
    EXPECT_EQ(messenger.finish(), 0);
    EXPECT_THAT(folder.read("output"), HasSubstr("--notify"));
    start({"--nonsense"});
    EXPECT_EQ(messenger.finish(), 2);
    EXPECT_THAT(messenger.said, HasSubstr("usage: quillon-messenger"));
}

}  // namespace
}  // namespace quillon::test
