// SPDX-License-Identifier: MIT
#pragma once

// The receiving side of the alert exchange, without its socket: what becomes of each datagram, and the texts of alerts.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "messaging/alert_datagram.h"
#include "platform/host_address.h"
#include "platform/moment.h"

namespace quillon {

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
    using Use = std::function<void(const ReceivedAlert& alert)>;

    /// Called in this order for an alert: what is acknowledged is stored, and showing may take its time. `answer` gets
    /// the name in the alert, UTF-8.
    Messenger(Use store, Answer answer, Use show)
        : store_(std::move(store)), answer_(std::move(answer)), show_(std::move(show)) {}

    DatagramKind take(std::string_view bytes);

    [[nodiscard]] const MessengerCounts& counts() const { return counts_; }

private:
    Use store_;
    Answer answer_;
    Use show_;
    MessengerCounts counts_;
};

/// How many alerts of one computer are stored and shown in a minute; what comes above it is acknowledged alone.
inline constexpr std::size_t kMostAlertsAMinute = 60;

/// Keeps count of the alerts of each computer, so that none of them fills logs and screens.
class AlertRate {
public:
    /// Counts an alert from this address. False: there were too many of them within this minute.
    [[nodiscard]] bool allows(const HostAddress& source, Moment now);

private:
    struct Minute {
        Moment start;
        std::size_t alerts = 0;
    };
    std::unordered_map<std::string, Minute> minutes_;  // by the bytes of the address
};

/// The alert with no more text than a log can take: at most 64 characters of sender, 500 of subject and 8,000 of body,
/// with " [...]" where something was cut.
[[nodiscard]] ReceivedAlert shortened(ReceivedAlert alert);

/// What fits into a notification of the desktop: at most `most` characters, and then " [...]".
[[nodiscard]] PageText shortened(const PageText& text, std::size_t most);

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
