// SPDX-License-Identifier: MIT
#pragma once

// Text for somebody who may not read it: a pipe that nobody empties, a terminal that was stopped or closed. Whoever
// writes here never waits.

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>

namespace quillon {

class PatientOutput {
public:
    /// More than so many bytes do not wait for their reader.
    static constexpr std::size_t kMostWaiting = std::size_t{1024} * 1024;

    /// `stream` must outlive this, and, when `finish` gives up, the process's last thread.
    explicit PatientOutput(std::ostream& stream);
    /// Leaves what has not been written to a thread that nobody waits for.
    ~PatientOutput();
    PatientOutput(const PatientOutput&) = delete;
    PatientOutput& operator=(const PatientOutput&) = delete;

    /// Hands a text over, to be written whole behind those before it. One that finds too much waiting is lost.
    void write(std::string text);

    /// Waits until everything is written, at most so long. False: somebody does not read.
    [[nodiscard]] bool finish(std::chrono::milliseconds patience);

    /// How many texts were lost: too much waited, or the stream took no more.
    [[nodiscard]] std::uint64_t lost() const;

private:
    struct State;
    static void work(State& state);

    std::shared_ptr<State> state_;
};

}  // namespace quillon
