// SPDX-License-Identifier: MIT
#pragma once

// What a job needs of the alert exchange: send one alert, and ask how its acknowledgement stands. A job calls these
// and knows nothing of sockets.

#include <cstdint>
#include <string>

namespace quillon {

/// How the acknowledgement of the last alert stands.
enum class AckState : std::int16_t {
    None = 0,          ///< not acknowledged
    Acknowledged = 1,  ///< the other computer has answered
    Pending = 2,       ///< set by a caller before it sends
};

/// What every caller gives for `ackRequest`: the receiver is asked to answer.
inline constexpr std::int16_t kAskForAcknowledgement = 1;

class AlertSender {
public:
    virtual ~AlertSender() = default;

    /// Sends one datagram to the computer `target` and turns the event loop until something arrives or ten seconds have
    /// passed. True when an acknowledgement counted, that is when `ackState` is not None afterwards; a state of Pending
    /// that survived the wait counts too. Shows no box of its own. All texts are UTF-8; `body` may hold many lines
    /// ended by CR LF. `alertFlag` is 1 for a problem, else 0. On screens whose alerts carry a date `subject` comes
    /// back with the date in front.
    [[nodiscard]] virtual bool sendAlert(const std::string& target, std::int16_t ackRequest, std::string& subject,
                                         const std::string& body, std::int16_t alertFlag) = 0;

    /// Closes both sockets: an answer to an earlier alert that still waits in one is gone. `sendAlert` does so itself;
    /// a caller that may end without sending calls this.
    virtual void closeSockets() = 0;

    [[nodiscard]] virtual AckState ackState() const = 0;
    virtual void setAckState(AckState state) = 0;

    /// Why the last alert was not acknowledged, as far as this computer knows, for a person.
    [[nodiscard]] virtual std::string silenceCause() const { return {}; }

    /// Turns the event loop while `ackState` is Pending, at most 1001 times: what a caller does after a send that it
    /// announced with Pending.
    virtual void turnWhilePending() = 0;

    /// True when `target` is this computer: the names are compared in lower case, the host name without blanks on the
    /// right.
    [[nodiscard]] virtual bool isThisComputer(const std::string& target) const = 0;
};

}  // namespace quillon
