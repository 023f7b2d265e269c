// SPDX-License-Identifier: MIT
#include "messaging/patient_output.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <ostream>
#include <utility>

#include "platform/start_beside.h"

namespace quillon {

struct PatientOutput::State {
    explicit State(std::ostream& to) : stream(to) {}

    std::ostream& stream;  // of the writing thread alone
    mutable std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::string> waiting;
    std::size_t bytes = 0;
    bool writing = false;
    bool ended = false;
    std::uint64_t lost = 0;
};

PatientOutput::PatientOutput(std::ostream& stream) : state_(std::make_shared<State>(stream)) {
}

PatientOutput::~PatientOutput() {
    const std::lock_guard lock(state_->mutex);
    state_->ended = true;
}

void PatientOutput::write(std::string text) {
    const std::lock_guard lock(state_->mutex);
    if (state_->bytes + text.size() > kMostWaiting) {
        ++state_->lost;
        return;
    }
    state_->bytes += text.size();
    state_->waiting.push_back(std::move(text));
    if (std::exchange(state_->writing, true) || startBeside([state = state_] { work(*state); }))
        return;
    state_->writing = false;
    state_->bytes -= state_->waiting.back().size();
    state_->waiting.pop_back();
    ++state_->lost;
}

void PatientOutput::work(State& state) {
    std::unique_lock lock(state.mutex);
    while (!state.ended && !state.waiting.empty()) {
        const std::string text = std::move(state.waiting.front());
        state.waiting.pop_front();
        lock.unlock();
        state.stream << text << std::flush;
        const bool written = state.stream.good();
        state.stream.clear();
        lock.lock();
        state.bytes -= text.size();
        state.lost += written ? 0 : 1;
    }
    state.writing = false;
    state.changed.notify_all();
}

bool PatientOutput::finish(std::chrono::milliseconds patience) {
    std::unique_lock lock(state_->mutex);
    return state_->changed.wait_for(lock, patience, [this] { return !state_->writing; });
}

std::uint64_t PatientOutput::lost() const {
    const std::lock_guard lock(state_->mutex);
    return state_->lost;
}

}  // namespace quillon
