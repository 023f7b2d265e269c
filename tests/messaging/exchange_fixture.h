// SPDX-License-Identifier: MIT
#pragma once

// An exchange of one screen on two scripted sockets, with the default ports and a clock that stands still until told.

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "messaging/alert_exchange.h"
#include "support/fake_surroundings.h"
#include "support/scripted_socket.h"
#include "support/temp_folder.h"

namespace quillon::test {

inline const std::string kAck = std::string("DESK2\xFF") + "0\xFF" + "Acknowledged";

class ExchangeFixture : public testing::Test {
protected:
    ExchangeFixture() {
        installation.settings.localPath.assign(pageFromPath(folder.path() / "local"));
        installation.refreshPathVariables();
        use(AlertScreen::Main);
    }

    void use(AlertScreen screen) {
        exchange = std::make_unique<AlertExchange>(screen, server, client, installation, around.surroundings,
                                                   [] { return std::string("1234"); });
    }

    /// Sends "subject" and "body" to DESK2 and gives the answer.
    bool send(std::int16_t flag = 0) {
        subject = "subject";
        return exchange->sendAlert("DESK2", kAskForAcknowledgement, subject, "body", flag);
    }

    /// The clock moves on by this much in every turn.
    void tickPerTurn(std::int64_t milliseconds) {
        around.loop.onTurn = [this, milliseconds](int) { around.clock.tick += milliseconds; };
    }

    /// A datagram reaches a socket in the given turn, in which the clock moves on by `milliseconds`.
    void arriveInTurn(int turn, ScriptedSocket& socket, std::string bytes, std::int64_t milliseconds = 0) {
        around.loop.onTurn = [this, turn, &socket, bytes = std::move(bytes), milliseconds](int now) {
            if (now == turn) {
                around.clock.tick += milliseconds;
                socket.arrive(bytes);
            }
        };
    }

    std::string log() const { return folder.read("local/Settings/Messaging logs/logs.dat"); }

    TempFolder folder;
    FakeSurroundings around;
    Installation installation{folder.path() / "app"};
    std::vector<std::string> journal;
    ScriptedSocket server{"server", journal};
    ScriptedSocket client{"client", journal};
    std::unique_ptr<AlertExchange> exchange;
    std::string subject;
};

}  // namespace quillon::test
