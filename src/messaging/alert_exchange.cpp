// SPDX-License-Identifier: MIT
#include "messaging/alert_exchange.h"

#include <array>
#include <utility>

#include <fmt/format.h>

#include "app/turn_until.h"
#include "messaging/alert_datagram.h"
#include "messaging/message_log.h"
#include "text/fields.h"
#include "text/numbers.h"
#include "text/unicode.h"

namespace quillon {

namespace {

// How long a poll may sleep while nothing happens: short enough for a lively screen, long enough to spare the
// processor.
constexpr std::chrono::milliseconds kPollPatience{2};
constexpr int kPendingTurns = 1001;

constexpr AlertScreenRules kMainRules{
    .datePrefix = true,
    .clientPeerIsTarget = true,
    .setsClientRemotePort = true,
    .remembersPortConflict = false,
    .lateAnswerCounts = false,
    .writesLog = true,
    .disablesButton = true,
    .showsStatus = false,
    .oneButton = false,
    .testRefusesThisComputer = false,
    .testTellsOddState = false,
};
constexpr AlertScreenRules kZipRules{
    .datePrefix = true,
    .clientPeerIsTarget = false,
    .setsClientRemotePort = false,
    .remembersPortConflict = false,
    .lateAnswerCounts = false,
    .writesLog = true,
    .disablesButton = false,
    .showsStatus = false,
    .oneButton = false,
    .testRefusesThisComputer = true,
    .testTellsOddState = true,
};
constexpr AlertScreenRules kWizardRules{
    .datePrefix = false,
    .clientPeerIsTarget = false,
    .setsClientRemotePort = false,
    .remembersPortConflict = true,
    .lateAnswerCounts = true,
    .writesLog = false,
    .disablesButton = true,
    .showsStatus = true,
    .oneButton = true,
    .testRefusesThisComputer = true,
    .testTellsOddState = true,
};

void closeIfOpen(DatagramSocket& socket) {
    if (socket.isOpen())
        socket.close();
}

std::u16string comparable(std::string_view name) {
    return lowered(utf8ToUtf16(name));
}

// Field 2 of a datagram of three or more fields. A datagram of two fields has none: the handler that wanted it ends.
Result<bool> saysAcknowledged(const std::vector<std::string_view>& fields) {
    if (fields.size() < 3)
        return failure(ErrorKind::Subscript, "Subscript out of range");
    return fields[2] == kAcknowledgedWord;
}

}  // namespace

const AlertScreenRules& alertScreenRules(AlertScreen screen) {
    switch (screen) {
        case AlertScreen::Zip:
            return kZipRules;
        case AlertScreen::SetupWizard:
            return kWizardRules;
        case AlertScreen::Main:
            break;
    }
    return kMainRules;
}

AlertExchange::AlertExchange(AlertScreen screen, DatagramSocket& server, DatagramSocket& client,
                             const Installation& installation, const Surroundings& surroundings, LogName logName,
                             AlertPorts* ports)
    : rules_(alertScreenRules(screen)),
      server_(server),
      client_(client),
      installation_(installation),
      surroundings_(surroundings),
      logName_(std::move(logName)),
      ports_(ports) {
    if (ports_ != nullptr)
        ports_->exchanges_.push_back(this);
}

AlertExchange::~AlertExchange() {
    if (ports_ != nullptr)
        std::erase(ports_->exchanges_, this);
}

void AlertPorts::closeIdle(const AlertExchange& sender) const {
    for (AlertExchange* const other : exchanges_) {
        if (other != &sender && !other->isWaiting())
            other->closeSockets();
    }
}

bool AlertExchange::sendAlert(const std::string& target, std::int16_t ackRequest, std::string& subject,
                              const std::string& body, std::int16_t alertFlag) {
    failures_.clear();
    const std::string plainSubject = subject;
    std::string sentBody = body;
    if (rules_.datePrefix) {
        errorText_ = "0";
        const std::string now = surroundings_.dates.general(surroundings_.clock.now());
        sentBody = now + "\r\n" + body;
        subject = now + "\r\n " + subject;
    }
    const std::string payload = encodeAlert({surroundings_.hostName, ackRequest, subject, sentBody, alertFlag});
    configureSockets(target);
    const bool wasWaiting = std::exchange(waiting_, true);  // a handler may send within a wait
    exchange(payload);
    waiting_ = wasWaiting;
    if (rules_.writesLog)
        writeLog(target, plainSubject, body);
    return ackState_ != AckState::None;
}

void AlertExchange::exchange(const std::string& payload) {
    trap(server_.sendData(payload));
    if (portConflict_) {
        // Whoever answers the box may close the sockets, and an alert whose receiver is still being looked up would
        // never leave.
        waitUntilSent();
        surroundings_.dialogs.tell("Warning",
                                   "The return message may have been intercepted by ZOV - Messenger "
                                   "or another application set to use the same port.",
                                   BoxStyle::Information);
        waitElapsed_ = 9999;
        ackState_ = AckState::Acknowledged;
    } else {
        wait();
    }
}

void AlertExchange::configureSockets(const std::string& target) {
    const AppSettings& settings = installation_.settings;
    closeSockets();
    if (ports_ != nullptr)
        ports_->closeIdle(*this);
    server_.setRemoteHost(target);
    server_.setRemotePort(settings.alertListenPort);
    server_.setLocalPort(settings.alertSourcePort);
    client_.setRemoteHost(rules_.clientPeerIsTarget ? target : surroundings_.hostName);
    if (rules_.setsClientRemotePort)
        client_.setRemotePort(settings.alertSourcePort);
    // Kept: the local port is set to the source port and at once overridden by the bind to the listen port (test
    // TheClientIsBoundToTheListenPortWhateverItsLocalPortSays).
    client_.setLocalPort(settings.alertSourcePort);
    trap(client_.bind(settings.alertListenPort));
}

void AlertExchange::wait() {
    // What arrived during an earlier wait says nothing about this one.
    messageArrived_ = false;
    waitElapsed_ = 0;
    const std::int64_t start = surroundings_.clock.milliseconds();
    const auto over = [&](std::chrono::milliseconds pause) {
        poll(pause);
        if (!messageArrived_ && (waitElapsed_ > kAlertWait || surroundings_.loop.stopAsked()))
            return true;
        // A turn can take its time: what counts is when the datagram is seen.
        waitElapsed_ = surroundings_.clock.milliseconds() - start;
        return messageArrived_;
    };
    turnUntil(surroundings_.loop, over, kPollPatience);
    if (!messageArrived_ && surroundings_.loop.stopAsked())
        ackState_ = AckState::None;
    if (waitElapsed_ >= kAlertWait && !rules_.lateAnswerCounts)
        ackState_ = AckState::None;
}

void AlertExchange::writeLog(const std::string& target, const std::string& subject, const std::string& body) const {
    const LocalTime now = surroundings_.clock.now();
    const DateTexts& dates = surroundings_.dates;
    std::string text =
        fmt::format("Logs:\\{}\\{}\\{}\\{},{},{},{},{},{}", logName_(), replacedAll(dates.date(now), "/", "-"),
                    trimRight(surroundings_.hostName), target, subject, dates.time(now), errorText_,
                    plainNumber(static_cast<std::int16_t>(ackState_)), withoutLineBreaks(body));
    passOver(writeMessageLog(text, installation_, surroundings_), "messaging never fails because of its log");
}

void AlertExchange::trap(const Result<void>& result) {
    if (!result)
        trap(result.error());
}

void AlertExchange::trap(const FileError& error) {
    errorText_ = error.text;
    failures_.push_back(error);
    if (rules_.remembersPortConflict && error.kind == ErrorKind::AddressInUse)
        portConflict_ = true;
}

void AlertExchange::poll(std::chrono::milliseconds patience) {
    if (client_.poll(patience).arrived) {
        passOver(clientArrival(), "a datagram of two fields ends its handler and nothing else");
        return;
    }
    const SocketEvents events = server_.poll(std::chrono::milliseconds{0});
    if (events.sendError)
        trap(*events.sendError);
    if (events.arrived)
        passOver(serverArrival(), "a datagram of two fields ends its handler and nothing else");
}

std::string AlertExchange::silenceCause() const {
    std::string cause;
    for (const FileError& failed : failures_) {
        cause += cause.empty() ? "" : "; ";
        if (failed.kind == ErrorKind::AddressInUse)
            cause += "another program of this computer has the port, and the answer with it: ";
        if (failed.kind == ErrorKind::NotFound)
            cause += "this computer does not know the name: ";
        cause += failed.text;
    }
    if (!cause.empty())
        return cause;
    if (!messageArrived_ && surroundings_.loop.stopAsked())
        return "the wait for an answer was stopped";
    return messageArrived_ ? "what came back was no acknowledgement" : "no answer came within 10 seconds";
}

void AlertExchange::turnWhilePending() {
    if (ackState_ != AckState::Pending)
        return;
    const auto settled = [this, turns = 0](std::chrono::milliseconds pause) mutable {
        poll(pause);
        return ++turns == kPendingTurns || ackState_ != AckState::Pending || surroundings_.loop.stopAsked();
    };
    const bool wasWaiting = std::exchange(waiting_, true);
    turnUntil(surroundings_.loop, settled, kPollPatience);
    waiting_ = wasWaiting;
}

bool AlertExchange::isThisComputer(const std::string& target) const {
    return comparable(target) == comparable(trimRight(surroundings_.hostName));
}

void AlertExchange::clearState() {
    messageArrived_ = false;
    ackState_ = AckState::None;
}

void AlertExchange::closeSockets() {
    closeIfOpen(server_);
    closeIfOpen(client_);
}

// A datagram has reached the listen port: the normal road of an acknowledgement.
Result<void> AlertExchange::clientArrival() {
    closeIfOpen(server_);
    const std::string datagram = client_.getData();
    messageArrived_ = true;
    const auto fields = alertFields(datagram);
    ackState_ = AckState::None;
    if (fields.size() >= 2) {
        const auto acknowledged = saysAcknowledged(fields);
        if (!acknowledged)
            return failure(acknowledged.error());
        if (*acknowledged)
            ackState_ = AckState::Acknowledged;
    }
    if (ackState_ == AckState::Acknowledged)
        closeIfOpen(client_);
    return {};
}

// A datagram has reached the source port.
//
// Kept: it is read from the other socket, so that what reached this one is never seen (test
// AnArrivalOnTheSourcePortIsReadFromTheOtherSocket).
Result<void> AlertExchange::serverArrival() {
    messageArrived_ = true;
    const std::string datagram = client_.getData();
    const auto fields = alertFields(datagram);
    if (fields.empty()) {
        ackState_ = AckState::None;
        closeIfOpen(server_);
        return {};
    }
    surroundings_.loop.turn();
    poll(kPollPatience);
    if (fields.size() < 2)
        return {};
    closeIfOpen(server_);
    if (asksForAcknowledgement(fields[1]))
        acknowledge(toUtf8(PageText{std::string(fields[0])}));
    closeIfOpen(server_);
    const auto acknowledged = saysAcknowledged(fields);
    if (!acknowledged)
        return failure(acknowledged.error());
    ackState_ = *acknowledged ? AckState::Acknowledged : AckState::None;
    closeIfOpen(client_);
    return {};
}

// The answer goes to the name inside the datagram, not to the address that it came from.
void AlertExchange::acknowledge(const std::string& asker) {
    const AppSettings& settings = installation_.settings;
    server_.setRemoteHost(asker);
    server_.setRemotePort(settings.alertListenPort);
    server_.setLocalPort(settings.alertSourcePort);
    trap(server_.bind(settings.alertSourcePort));
    trap(server_.sendData(encodeAcknowledgement(surroundings_.hostName)));
    // The handler closes the socket at once, and that would drop an answer whose receiver is still being looked up.
    waitUntilSent();
}

// As long as its receiver is looked up; no longer than an answer is waited for.
void AlertExchange::waitUntilSent() {
    if (!server_.isSending())
        return;
    const std::int64_t start = surroundings_.clock.milliseconds();
    const auto isSent = [&](std::chrono::milliseconds pause) {
        if (const auto events = server_.poll(pause); events.sendError)
            trap(*events.sendError);
        return !server_.isSending() || surroundings_.clock.milliseconds() - start > kAlertWait;
    };
    turnUntil(surroundings_.loop, isSent, kPollPatience);
}

}  // namespace quillon
