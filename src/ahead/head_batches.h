// SPDX-License-Identifier: MIT
#pragma once

// Heads of a source that is quick, read many at a time by some threads: for work whose limit is the processor, so that
// more than one is used, and a thread is woken once for many heads. As soon as a head does not come quickly, or the
// source needs care, what was asked for and not begun is left out: whoever asked has it read in another way.

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "ahead/ahead.h"
#include "platform/source_files.h"

namespace quillon {

class HeadBatches {
public:
    /// So many heads are in one batch, and so many batches can be asked for at once.
    static constexpr std::size_t kHeads = 32;
    static constexpr std::size_t kBatches = 8;

    struct Head {
        std::string path;
        HeaderBytes bytes;
        Result<std::size_t> result;
        bool answered = false;  ///< false for one that was left out
    };

    /// `threads`: how many work, the caller's own among them. It helps where it may stand still.
    HeadBatches(StandingStill standingStill, std::size_t threads, std::shared_ptr<SourceCare> care);
    ~HeadBatches() { batches_.release(); }
    HeadBatches(const HeadBatches&) = delete;
    HeadBatches& operator=(const HeadBatches&) = delete;

    /// Begins a batch behind those asked for; at most kBatches at a time.
    void begin() {
        begun_ = &batches_.ask();
        begun_->count = 0;
    }
    /// Adds a head to the batch just begun, at most kHeads. Gives its place there.
    [[nodiscard]] std::size_t add(std::string_view path);
    /// The batch just begun is complete.
    void ask();
    [[nodiscard]] std::size_t asked() const { return batches_.asked(); }

    /// True when the first batch is at hand. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool firstArrives(std::chrono::milliseconds limit);
    [[nodiscard]] const Head& first(std::size_t place) { return batches_.first().heads[place]; }
    void dropFirst() { batches_.dropFirst(); }
    /// Forgets the first batch, although it has not come.
    void giveUpFirst() { batches_.giveUpFirst(); }
    /// The same for the batch asked for last.
    void giveUpLast() { batches_.giveUpLast(); }

    /// True when heads did not come quickly since the last call of `forgetSlow`.
    [[nodiscard]] bool sawSlow() const { return shared_->slow; }
    /// The source is quick again.
    void forgetSlow() { shared_->slow = false; }

private:
    struct Batch {
        std::size_t count = 0;
        std::array<Head, kHeads> heads;
    };
    struct Shared {
        std::shared_ptr<SourceCare> care;
        std::atomic<bool> slow = false;
    };
    static void read(Batch& batch, SourceFiles& files, Shared& shared);

    std::shared_ptr<Shared> shared_;
    SourceFiles files_;
    std::size_t threads_;
    Batch* begun_ = nullptr;
    Ahead<Batch> batches_;
};

}  // namespace quillon
