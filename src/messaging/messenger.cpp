// SPDX-License-Identifier: MIT
#include "messaging/messenger.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

#include <fmt/format.h>

#include "platform/moment.h"
#include "platform/start_beside.h"
#include "text/fields.h"

namespace quillon {

namespace {

// So many names may be looked up at once; a name server that is dead blocks one thread for each.
constexpr std::size_t kAnswerThreads = 8;
// A flood of forged alerts must not fill the memory.
constexpr std::size_t kMostWaiting = 1024;

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    // The page leaves five bytes open, which stand for control characters of the same number.
    return byte < ' ' || byte == 0x7F || byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D;
}

std::string harmless(std::string_view line) {
    std::string shown;
    for (const char c : line) shown += isControl(c) ? "\uFFFD" : toUtf8(PageText{std::string(1, c)});
    return shown;
}

}  // namespace

struct AnswerQueue::State {
    struct Waiting {
        std::string name;
        Moment deadline;
    };

    std::string bytes;
    HostResolver resolver;
    Send send;
    std::chrono::milliseconds limit{};

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<Waiting> waiting;
    std::size_t threads = 0;
    bool ended = false;
    Counts counts;

    // Looks the name up and sends, unless the time is over by then.
    std::uint64_t Counts::*deliver(const Waiting& answer) {
        if (momentNow() > answer.deadline)
            return &Counts::dropped;
        const auto address = resolver(answer.name);
        if (!address)
            return &Counts::failed;
        const std::lock_guard lock(mutex);
        if (ended || momentNow() > answer.deadline)
            return &Counts::dropped;
        return send(*address, bytes) ? &Counts::sent : &Counts::failed;
    }
};

AnswerQueue::AnswerQueue(std::string bytes, HostResolver resolver, Send send, std::chrono::milliseconds limit)
    : state_(std::make_shared<State>()) {
    state_->bytes = std::move(bytes);
    state_->resolver = std::move(resolver);
    state_->send = std::move(send);
    state_->limit = limit;
}

AnswerQueue::~AnswerQueue() {
    const std::lock_guard lock(state_->mutex);
    state_->ended = true;
}

void AnswerQueue::answer(const std::string& name) {
    const std::lock_guard lock(state_->mutex);
    if (state_->waiting.size() >= kMostWaiting) {
        ++state_->counts.dropped;
        return;
    }
    state_->waiting.push_back({name, momentNow() + state_->limit});
    // All threads that there are may be stuck in a look-up.
    if (state_->threads == kAnswerThreads)
        return;
    if (startBeside([state = state_] { work(*state); })) {
        ++state_->threads;
    } else if (state_->threads == 0) {
        state_->waiting.pop_back();
        ++state_->counts.dropped;
    }
}

void AnswerQueue::work(State& state) {
    std::unique_lock lock(state.mutex);
    while (!state.ended && !state.waiting.empty()) {
        const State::Waiting answer = std::move(state.waiting.front());
        state.waiting.pop_front();
        lock.unlock();
        const auto outcome = state.deliver(answer);
        lock.lock();
        ++(state.counts.*outcome);
    }
    --state.threads;
    state.changed.notify_all();
}

bool AnswerQueue::finish(std::chrono::milliseconds patience) {
    std::unique_lock lock(state_->mutex);
    return state_->changed.wait_for(lock, patience, [this] { return state_->threads == 0; });
}

AnswerQueue::Counts AnswerQueue::counts() const {
    const std::lock_guard lock(state_->mutex);
    return state_->counts;
}

DatagramKind Messenger::take(std::string_view bytes) {
    if (isAcknowledgement(bytes)) {
        ++counts_.acknowledgements;
        return DatagramKind::Acknowledgement;
    }
    const auto alert = decodeAlert(bytes);
    if (!alert) {
        ++counts_.bad;
        return DatagramKind::Bad;
    }
    ++counts_.alerts;
    if (alert->problem)
        ++counts_.problems;
    if (alert->wantsAnswer)
        answer_(toUtf8(alert->sender));
    show_(*alert);
    return DatagramKind::Alert;
}

std::vector<std::string> harmlessLines(const PageText& text) {
    std::vector<std::string> lines;
    for (const std::string_view line : splitLines(text.bytes)) lines.push_back(harmless(line));
    return lines;
}

std::string harmlessLine(const PageText& text) {
    std::string joined;
    for (const std::string& line : harmlessLines(text)) {
        const std::string_view trimmed = trim(line);
        if (trimmed.empty())
            continue;
        if (!joined.empty())
            joined += " | ";
        joined += trimmed;
    }
    return joined;
}

std::string alertText(const std::string& time, const ReceivedAlert& alert) {
    std::string text = fmt::format("{}  {}{}\n  {}\n", time, harmlessLine(alert.sender),
                                   alert.problem ? "  PROBLEM" : "", harmlessLine(alert.subject));
    for (const std::string& line : harmlessLines(alert.body)) text += line.empty() ? "\n" : "    " + line + "\n";
    return text + "\n";
}

std::string alertRecord(const std::string& time, const ReceivedAlert& alert) {
    return fmt::format("{}\t{}\t{}\t{}\t{}\n", time, harmlessLine(alert.sender), alert.problem ? "problem" : "message",
                       harmlessLine(alert.subject), harmlessLine(alert.body));
}

}  // namespace quillon
