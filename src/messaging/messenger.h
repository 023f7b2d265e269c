// SPDX-License-Identifier: MIT
#pragma once

// The receiving side of the alert exchange, without its socket: what becomes of each datagram, and the answers.

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "messaging/alert_datagram.h"
#include "platform/host_address.h"
#include "platform/result.h"

namespace quillon {

/// An answer that leaves later than this after its alert is not sent at all: the sender has given up, and may be
/// waiting for the answer to another alert.
inline constexpr std::chrono::seconds kAnswerLimit{10};

/// Sends answers from threads of its own, so that a name that takes long to look up holds up neither the receiving nor,
/// for a few such names at once, the other answers.
class AnswerQueue {
public:
    struct Counts {
        std::uint64_t sent = 0;
        std::uint64_t failed = 0;   ///< the name is unknown, or the send failed
        std::uint64_t dropped = 0;  ///< too late, or too many were waiting
    };

    /// Sends one datagram to an address; called on any thread.
    using Send = std::function<Result<void>(const HostAddress& address, std::string_view bytes)>;

    /// `limit` is how old an alert may be when its answer leaves.
    AnswerQueue(std::string bytes, HostResolver resolver, Send send,
                std::chrono::milliseconds limit = std::chrono::milliseconds(kAnswerLimit));
    /// Does not wait for look-ups in progress; their answers are not sent any more.
    ~AnswerQueue();
    AnswerQueue(const AnswerQueue&) = delete;
    AnswerQueue& operator=(const AnswerQueue&) = delete;

    /// One answer to the computer of this name; returns at once.
    void answer(const std::string& name);

    /// Waits until nothing is left to do, at most so long. True when nothing is left.
    bool finish(std::chrono::milliseconds patience);

    [[nodiscard]] Counts counts() const;

private:
    struct State;
    static void work(State& state);

    std::shared_ptr<State> state_;
};

/// What a datagram turned out to be.
enum class DatagramKind {
    Alert,
    Acknowledgement,  ///< meant for a program on this computer, which cannot have its port while the messenger runs
    Bad,              ///< not one of ours; never answered
};

struct MessengerCounts {
    std::uint64_t alerts = 0;
    std::uint64_t problems = 0;
    std::uint64_t acknowledgements = 0;
    std::uint64_t bad = 0;
};

/// Takes datagrams one by one, counts them, and asks for an answer to each alert that wants one, exactly once.
class Messenger {
public:
    using Answer = std::function<void(const std::string& name)>;
    using Show = std::function<void(const ReceivedAlert& alert)>;

    /// `answer` gets the name in the alert, UTF-8, before `show` is called: showing may take its time.
    Messenger(Answer answer, Show show) : answer_(std::move(answer)), show_(std::move(show)) {}

    DatagramKind take(std::string_view bytes);

    [[nodiscard]] const MessengerCounts& counts() const { return counts_; }

private:
    Answer answer_;
    Show show_;
    MessengerCounts counts_;
};

/// Page text as UTF-8 lines for a terminal, a log or a notification: split at line ends, every other control character
/// replaced by U+FFFD, so that no alert can steer the terminal or forge a record.
[[nodiscard]] std::vector<std::string> harmlessLines(const PageText& text);

/// The lines of `harmlessLines` joined by " | "; blanks around each line are cut and empty lines fall away.
[[nodiscard]] std::string harmlessLine(const PageText& text);

/// What the terminal shows of an alert: time, sender and a mark for a problem; subject; body.
[[nodiscard]] std::string alertText(const std::string& time, const ReceivedAlert& alert);

/// The record of an alert in the log: time, sender, "problem" or "message", subject and body, split by tabs, and a line
/// end. UTF-8.
[[nodiscard]] std::string alertRecord(const std::string& time, const ReceivedAlert& alert);

}  // namespace quillon
