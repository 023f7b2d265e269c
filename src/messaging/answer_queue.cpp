// SPDX-License-Identifier: MIT
#include "messaging/answer_queue.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/moment.h"
#include "platform/start_beside.h"

namespace quillon {

namespace {

// A name server that is dead blocks a thread for each name, for up to half a minute: one forged name a second leaves
// half of these.
constexpr std::size_t kLookUps = 64;
constexpr std::size_t kLookUpsOfOneSource = 4;
// A flood of forged alerts must not fill the memory, nor take every place from the others.
constexpr std::size_t kMostWaiting = 1024;
constexpr std::size_t kMostWaitingOfOneSource = 128;
constexpr std::size_t kMostRemembered = 512;
// A name may go to another computer; but one that sends from the address that its name had has that name still.
constexpr std::chrono::minutes kRemembered{1};

// Whoever has one IPv6 address has the 64 bits behind the network's, too.
HostAddress sourceKey(HostAddress source) {
    if (!source.isIpv4())
        std::fill(source.bytes.begin() + 8, source.bytes.end(), std::uint8_t{0});
    source.scope = 0;
    return source;
}

struct Asked {
    HostAddress source;
    Moment deadline;
};

struct LookUp {
    std::string name;
    HostAddress source;  // of the first alert
    bool running = false;
    std::vector<Asked> asked;
};

struct Found {
    HostAddress address;
    Moment when;
};

}  // namespace

// All but `ask` and `known` happens under the mutex.
struct AnswerQueue::State : std::enable_shared_from_this<AnswerQueue::State> {
    std::string bytes;
    HostNames names;
    Send send;
    std::chrono::milliseconds limit{};

    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::pair<std::string, Asked>> arrived;
    std::list<LookUp> lookUps;  // by their first alerts
    std::unordered_map<std::string, Found> remembered;
    bool sorting = false;     // a thread takes what has arrived
    std::size_t threads = 0;  // that look names up
    bool ended = false;
    Counts counts;

    [[nodiscard]] std::size_t waiting(const std::optional<HostAddress>& source = std::nullopt) const;
    [[nodiscard]] std::optional<HostAddress> recall(const std::string& name, const HostAddress& source) const;
    void remember(const std::string& name, const HostAddress& address);
    void deliver(const Asked& asked, const HostAddress& address);
    void ask(std::string name, const Asked& asked);
    [[nodiscard]] std::list<LookUp>::iterator nextLookUp();
    void startLookUp();
    void end(const LookUp& lookUp, const Result<HostAddress>& address);

    static void sortArrived(State& state);
    static void lookUpNames(State& state);
};

std::size_t AnswerQueue::State::waiting(const std::optional<HostAddress>& source) const {
    const auto matches = [&source](const HostAddress& from) { return !source || from == *source; };
    auto count = static_cast<std::size_t>(
        std::ranges::count_if(arrived, [&](const auto& one) { return matches(one.second.source); }));
    for (const LookUp& lookUp : lookUps)
        count += static_cast<std::size_t>(
            std::ranges::count_if(lookUp.asked, [&](const Asked& asked) { return matches(asked.source); }));
    return count;
}

std::optional<HostAddress> AnswerQueue::State::recall(const std::string& name, const HostAddress& source) const {
    const auto found = remembered.find(name);
    if (found == remembered.end())
        return std::nullopt;
    const auto& [address, when] = found->second;
    const bool holds = sourceKey(address) == source || momentNow() - when < kRemembered;
    return holds ? std::optional(address) : std::nullopt;
}

void AnswerQueue::State::remember(const std::string& name, const HostAddress& address) {
    if (remembered.size() >= kMostRemembered) {
        const auto older = [](const auto& a, const auto& b) { return a.second.when < b.second.when; };
        remembered.erase(std::ranges::min_element(remembered, older));
    }
    remembered[name] = {address, momentNow()};
}

void AnswerQueue::State::deliver(const Asked& asked, const HostAddress& address) {
    if (ended || momentNow() > asked.deadline)
        ++counts.dropped;
    else
        ++(send(address, bytes) ? counts.sent : counts.failed);
}

// A name that is looked up already needs no second look-up.
void AnswerQueue::State::ask(std::string name, const Asked& asked) {
    const auto same = std::ranges::find(lookUps, name, &LookUp::name);
    if (same != lookUps.end())
        same->asked.push_back(asked);
    else
        lookUps.push_back({std::move(name), asked.source, false, {asked}});
}

// The first that may begin; end() for none.
std::list<LookUp>::iterator AnswerQueue::State::nextLookUp() {
    return std::ranges::find_if(lookUps, [this](const LookUp& candidate) {
        const auto ofItsSource = std::ranges::count_if(
            lookUps, [&candidate](const LookUp& other) { return other.running && other.source == candidate.source; });
        return !candidate.running && static_cast<std::size_t>(ofItsSource) < kLookUpsOfOneSource;
    });
}

// One more thread, where one has something to do. A system may be out of threads: who waits then waits for nobody.
void AnswerQueue::State::startLookUp() {
    if (threads >= kLookUps || nextLookUp() == lookUps.end())
        return;
    if (startBeside([kept = shared_from_this()] { lookUpNames(*kept); })) {
        ++threads;
    } else if (threads == 0) {
        for (const LookUp& lookUp : lookUps) counts.dropped += lookUp.asked.size();
        lookUps.clear();
    }
}

void AnswerQueue::State::end(const LookUp& lookUp, const Result<HostAddress>& address) {
    if (address)
        remember(lookUp.name, *address);
    for (const Asked& asked : lookUp.asked) {
        if (address)
            deliver(asked, *address);
        else
            ++counts.failed;
    }
}

// The quick lane: one thread that asks nobody. What it cannot answer is left to be looked up.
void AnswerQueue::State::sortArrived(State& state) {
    std::unique_lock lock(state.mutex);
    while (!state.ended && !state.arrived.empty()) {
        auto [name, asked] = std::move(state.arrived.front());
        state.arrived.pop_front();
        auto address = state.recall(name, asked.source);
        if (!address) {
            lock.unlock();
            const auto known = state.names.known(name);
            lock.lock();
            address = known ? std::optional(*known) : std::nullopt;
        }
        if (address) {
            state.deliver(asked, *address);
            continue;
        }
        state.ask(std::move(name), asked);
        state.startLookUp();
    }
    state.sorting = false;
    state.changed.notify_all();
}

void AnswerQueue::State::lookUpNames(State& state) {
    std::unique_lock lock(state.mutex);
    for (auto next = state.nextLookUp(); !state.ended && next != state.lookUps.end(); next = state.nextLookUp()) {
        next->running = true;
        std::erase_if(next->asked, [&state](const Asked& asked) {
            const bool late = momentNow() > asked.deadline;
            state.counts.dropped += late ? 1 : 0;
            return late;
        });
        if (!next->asked.empty()) {
            lock.unlock();
            const auto address = state.names.ask(next->name);
            lock.lock();
            state.end(*next, address);
        }
        state.lookUps.erase(next);
    }
    --state.threads;
    state.changed.notify_all();
}

AnswerQueue::AnswerQueue(std::string bytes, HostNames names, Send send, std::chrono::milliseconds limit)
    : state_(std::make_shared<State>()) {
    state_->bytes = std::move(bytes);
    state_->names = std::move(names);
    state_->send = std::move(send);
    state_->limit = limit;
}

AnswerQueue::~AnswerQueue() {
    const std::lock_guard lock(state_->mutex);
    state_->ended = true;
}

void AnswerQueue::answer(const std::string& name, const HostAddress& source) {
    const std::lock_guard lock(state_->mutex);
    const HostAddress key = sourceKey(source);
    if (state_->waiting() >= kMostWaiting || state_->waiting(key) >= kMostWaitingOfOneSource) {
        ++state_->counts.dropped;
        return;
    }
    state_->arrived.push_back({name, {key, momentNow() + state_->limit}});
    if (std::exchange(state_->sorting, true) || startBeside([state = state_] { State::sortArrived(*state); }))
        return;
    state_->sorting = false;
    state_->arrived.pop_back();
    ++state_->counts.dropped;
}

bool AnswerQueue::finish(std::chrono::milliseconds patience) {
    std::unique_lock lock(state_->mutex);
    return state_->changed.wait_for(lock, patience, [this] { return !state_->sorting && state_->threads == 0; });
}

AnswerQueue::Counts AnswerQueue::counts() const {
    const std::lock_guard lock(state_->mutex);
    return state_->counts;
}

}  // namespace quillon
