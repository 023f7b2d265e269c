// SPDX-License-Identifier: MIT
#pragma once

// Keeps the alerts that a job sends and answers each with the same acknowledgement.

#include <functional>
#include <string>
#include <vector>

#include "messaging/alert_sender.h"

namespace quillon::test {

class ScriptedAlerts final : public AlertSender {
public:
    bool sendAlert(const std::string& target, std::int16_t ackRequest, std::string& subject, const std::string& body,
                   std::int16_t alertFlag) override {
        sent.push_back(target + "|" + std::to_string(ackRequest) + "|" + subject + "|" + std::to_string(alertFlag));
        bodies.push_back(body);
        stateAtSend = state;
        if (onSend)
            onSend();
        state = answer;
        return answer != AckState::None;
    }
    void closeSockets() override {}
    AckState ackState() const override { return state; }
    void setAckState(AckState next) override { state = next; }
    void turnWhilePending() override { ++waits; }
    bool isThisComputer(const std::string& target) const override { return target == "LAB7"; }

    std::vector<std::string> sent;  ///< "target|acknowledgement|subject|alert flag"
    std::vector<std::string> bodies;
    AckState state = AckState::None;
    AckState stateAtSend = AckState::None;
    AckState answer = AckState::Acknowledged;
    int waits = 0;
    std::function<void()> onSend;
};

}  // namespace quillon::test
