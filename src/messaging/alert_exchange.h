// SPDX-License-Identifier: MIT
#pragma once

// The alert exchange: one datagram out, at most ten seconds of turning the event loop, and the handlers of what
// arrives. Three screens have an instance each; what differs between them is a table.

#include <functional>
#include <string>
#include <vector>

#include "app/installation.h"
#include "app/surroundings.h"
#include "messaging/alert_sender.h"
#include "platform/datagram_socket.h"

namespace quillon {

enum class AlertScreen { Main, Zip, SetupWizard };

/// Where the exchange, and query and test of a recipient box, differ between the screens.
struct AlertScreenRules {
    bool datePrefix;             ///< date and time stand ahead of subject and body
    bool clientPeerIsTarget;     ///< the client's remote host before its bind is the target, else this computer
    bool setsClientRemotePort;   ///< the client's remote port before its bind is the source port
    bool remembersPortConflict;  ///< a taken port warns from then on and counts as acknowledged
    bool lateAnswerCounts;       ///< the time-out leaves an acknowledgement that was set
    bool writesLog;              ///< one record in the messaging log
    bool disablesButton;         ///< "Query Network" and "Test" are off while they run
    bool showsStatus;            ///< a line tells what runs; both sockets are closed ahead of a test
    bool oneButton;              ///< query and test are one button, which follows the chosen item
    bool testRefusesThisComputer;
    bool testTellsOddState;  ///< a test that was sent but not answered tells the trapped error
};

[[nodiscard]] const AlertScreenRules& alertScreenRules(AlertScreen screen);

/// The longest wait, in milliseconds; an answer that is seen at 10,000 or later is too late.
inline constexpr std::int64_t kAlertWait = 10000;

class AlertExchange;

/// The exchanges of one process: all of them use the same two ports. The socket that waited for an answer in vain stays
/// bound until the next send, of whichever screen that is.
class AlertPorts {
public:
    /// Closes the sockets of every exchange but `sender` that does not wait for an answer at this moment.
    void closeIdle(const AlertExchange& sender) const;

private:
    friend class AlertExchange;
    std::vector<AlertExchange*> exchanges_;
};

class AlertExchange final : public AlertSender {
public:
    /// What the log calls the job at the moment of writing: the job ID, or the name of the archive. UTF-8.
    using LogName = std::function<std::string()>;

    /// All references must outlive the exchange, and so must `ports`, which knows of the other exchanges of the
    /// process; null where there are none. The port numbers are read from the settings at each send.
    AlertExchange(AlertScreen screen, DatagramSocket& server, DatagramSocket& client, const Installation& installation,
                  const Surroundings& surroundings, LogName logName, AlertPorts* ports = nullptr);
    ~AlertExchange() override;
    AlertExchange(const AlertExchange&) = delete;
    AlertExchange& operator=(const AlertExchange&) = delete;

    [[nodiscard]] bool sendAlert(const std::string& target, std::int16_t ackRequest, std::string& subject,
                                 const std::string& body, std::int16_t alertFlag) override;
    void closeSockets() override;
    [[nodiscard]] AckState ackState() const override { return ackState_; }
    void setAckState(AckState state) override { ackState_ = state; }
    [[nodiscard]] std::string silenceCause() const override;
    void turnWhilePending() override;
    [[nodiscard]] bool isThisComputer(const std::string& target) const override;

    /// What a test begins with: nothing has arrived, nothing is acknowledged.
    void clearState();

    /// True while an alert is on its way or its answer is waited for.
    [[nodiscard]] bool isWaiting() const { return waiting_; }

    [[nodiscard]] const AlertScreenRules& rules() const { return rules_; }
    /// The description of the last failure of a socket. On the main window and the zip screen "0" when the last send
    /// had none; on the wizard empty until one fails.
    [[nodiscard]] const std::string& errorText() const { return errorText_; }
    /// The wizard's only: a port was taken. Nothing resets it.
    [[nodiscard]] bool portConflict() const { return portConflict_; }
    [[nodiscard]] bool messageArrived() const { return messageArrived_; }
    /// Milliseconds that the last wait took; 9999 where there was none.
    [[nodiscard]] std::int64_t waitElapsed() const { return waitElapsed_; }

private:
    void configureSockets(const std::string& target);
    void exchange(const std::string& payload);
    void wait();
    void waitUntilSent();
    void writeLog(const std::string& target, const std::string& subject, const std::string& body) const;
    void trap(const Result<void>& result);
    void trap(const FileError& error);
    void poll(std::chrono::milliseconds patience);
    [[nodiscard]] Result<void> clientArrival();
    [[nodiscard]] Result<void> serverArrival();
    void acknowledge(const std::string& asker);

    const AlertScreenRules& rules_;
    DatagramSocket& server_;
    DatagramSocket& client_;
    const Installation& installation_;
    const Surroundings& surroundings_;
    LogName logName_;
    AlertPorts* ports_;

    bool waiting_ = false;
    bool messageArrived_ = false;
    AckState ackState_ = AckState::None;
    std::int64_t waitElapsed_ = 0;
    std::string errorText_;
    std::vector<FileError> failures_;  // of the sockets, since the last alert began
    bool portConflict_ = false;
};

}  // namespace quillon
