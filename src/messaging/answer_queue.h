// SPDX-License-Identifier: MIT
#pragma once

// The answers to alerts. They go to the computer that an alert names, and that name has to be looked up, which takes
// long for a name that nobody knows. Anybody can send such alerts, so none of them may cost another computer's answer.

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/host_address.h"
#include "platform/result.h"

namespace quillon {

/// An answer that leaves later than this after its alert is not sent at all: the sender has given up, and may be
/// waiting for the answer to another alert.
inline constexpr std::chrono::seconds kAnswerLimit{10};

/// How names of computers become addresses.
struct HostNames {
    HostResolver ask;  ///< asks whoever may know; may take long
    /// Tells what this computer knows by itself, at once.
    HostResolver known = [](const std::string& name) -> Result<HostAddress> {
        return failure(ErrorKind::NotFound, name);
    };
};

/// Sends answers from threads of its own and returns at once. A name that was found before, and one that this computer
/// knows by itself, waits for no other name. Each other name is looked up once however many alerts name it, up to 64
/// names at a time and up to four for alerts from one address.
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
    AnswerQueue(std::string bytes, HostNames names, Send send,
                std::chrono::milliseconds limit = std::chrono::milliseconds(kAnswerLimit));
    /// Does not wait for look-ups in progress; their answers are not sent any more.
    ~AnswerQueue();
    AnswerQueue(const AnswerQueue&) = delete;
    AnswerQueue& operator=(const AnswerQueue&) = delete;

    /// One answer to the computer of this name; `source` is the address that its alert came from.
    void answer(const std::string& name, const HostAddress& source = {});

    /// Waits until nothing is left to do, at most so long. True when nothing is left.
    bool finish(std::chrono::milliseconds patience);

    [[nodiscard]] Counts counts() const;

private:
    struct State;

    std::shared_ptr<State> state_;
};

}  // namespace quillon
