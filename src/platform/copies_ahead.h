// SPDX-License-Identifier: MIT
#pragma once

// Copies of many files, in the order of their asking. Threads bring the bytes of small files over before their turn
// comes, which nobody sees: each gets its name at its turn and not before, and a failure is told then. A large file, or
// one that could not be opened or made ahead, is copied at its turn.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ahead_threads.h"
#include "platform/arriving_file.h"
#include "platform/copy_file.h"

namespace quillon {

class CopiesAhead {
public:
    /// So many copies can be asked for at once.
    static constexpr std::size_t kMost = 64;
    /// A larger file, in bytes, waits for its turn.
    static constexpr std::uint64_t kLargest = 1024UL * 1024;

    /// Whether the caller's thread may prepare files, too, and so stand still for a slow one.
    enum class Helping { Allowed, Never };

    explicit CopiesAhead(Helping helping);
    ~CopiesAhead() { release(); }
    CopiesAhead(const CopiesAhead&) = delete;
    CopiesAhead& operator=(const CopiesAhead&) = delete;

    /// Asks for a copy as FileCopier makes it, behind those asked for before; at most kMost at a time.
    void ask(std::string_view source, std::string_view target);
    [[nodiscard]] std::size_t asked() const { return asked_; }

    /// True when the turn of the first copy may come: it is prepared, or will not be. Waits for that, but not much
    /// longer than `limit`.
    [[nodiscard]] bool firstArrives(std::chrono::milliseconds limit);
    /// The turn of the first copy, which is forgotten then: waits until it is prepared, and makes the file appear.
    [[nodiscard]] tl::expected<void, CopyError> finishFirst(const CopyProgress& progress);

    /// Forgets all copies asked for, of which nothing stays, and waits for the threads to end.
    void release();

private:
    struct Slot : AheadTask {
        std::string source;
        std::string target;
        std::uint64_t size = 0;
        std::optional<tl::expected<ArrivingFile, CopyError>> file;  // all of it but its name, or why not
        bool left = false;                                          // to a thread
    };

    [[nodiscard]] Slot& first() { return slots_[first_]; }
    [[nodiscard]] bool mayHelp() const { return helping_ == Helping::Allowed && quickInARow_ == kMost; }
    [[nodiscard]] bool helpUntilDone(Slot& slot);
    void prepareTimed(Slot& slot);
    void prepare(Slot& slot, FileCopier& copier);
    [[nodiscard]] tl::expected<void, CopyError> finish(Slot& slot, const CopyProgress& progress);

    Helping helping_;
    FileCopier copier_;
    std::size_t quickInARow_ = kMost;
    std::atomic<bool> ending_ = false;

    std::vector<Slot> slots_ = std::vector<Slot>(kMost);  // a ring: asked_ slots from first_ on are in use
    std::size_t first_ = 0;
    std::size_t asked_ = 0;

    AheadThreads threads_;
};

}  // namespace quillon
