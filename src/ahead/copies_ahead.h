// SPDX-License-Identifier: MIT
#pragma once

// Copies of many files, in the order of their asking. Threads bring the bytes of small files over before their turn
// comes, which nobody sees: each gets its name at its turn and not before, and a failure is told then. A large file, or
// one that could not be opened or made ahead, is copied at its turn. Where the caller's thread may not stand still,
// that is done by a thread, too, and so is the naming on a volume that may be another computer's.

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "ahead/ahead.h"
#include "platform/arriving_file.h"
#include "platform/copy_file.h"

namespace quillon {

class CopiesAhead {
    struct Copy;

public:
    /// So many copies can be asked for at once.
    static constexpr std::size_t kMost = Ahead<Copy>::kMost;
    /// A larger file, in bytes, waits for its turn.
    static constexpr std::uint64_t kLargest = 1024UL * 1024;

    /// Called now and then by a `finishFirst` that waits.
    using Idle = std::function<void()>;

    /// A caller's thread that may stand still prepares files, too.
    CopiesAhead(StandingStill standingStill, Idle idle);
    ~CopiesAhead() { release(); }
    CopiesAhead(const CopiesAhead&) = delete;
    CopiesAhead& operator=(const CopiesAhead&) = delete;

    /// Asks for a copy as FileCopier makes it, behind those asked for before; at most kMost at a time.
    void ask(std::string_view source, std::string_view target);
    [[nodiscard]] std::size_t asked() const { return ahead_.asked(); }

    /// The turn of the first copy, which is forgotten then: waits until it is prepared, and makes the file appear.
    /// `progress` is called from here alone; what a thread has done meanwhile is told now and then.
    [[nodiscard]] tl::expected<void, CopyError> finishFirst(const CopyProgress& progress);

    /// Forgets all copies asked for, of which nothing stays, and waits for the threads to end.
    void release();

private:
    using Finished = tl::expected<void, CopyError>;

    struct Copy {
        std::string source;
        std::string target;
        std::optional<tl::expected<ArrivingFile, CopyError>> file;  // all of it but its name, or why not
        std::atomic<std::uint64_t> size = 0;

        bool itsTurn = false;  // what a thread has to do is to finish it, and not to prepare it
        std::atomic<std::uint64_t> done = 0;
        std::atomic<bool> cancelled = false;
        Finished finished;
    };

    void startThreads();
    void work(Copy& copy, FileCopier& copier);
    void prepare(Copy& copy, FileCopier& copier);
    [[nodiscard]] bool firstArrives();
    [[nodiscard]] bool mayMakeWait(const Copy& copy) const;
    [[nodiscard]] Finished finish(Copy& copy, FileCopier& copier, const CopyProgress& progress);
    [[nodiscard]] Finished finishBeside(Copy& copy, const CopyProgress& progress);

    StandingStill standingStill_;
    Idle idle_;
    FileCopier copier_;
    std::atomic<bool> ending_ = false;
    Ahead<Copy> ahead_;
};

}  // namespace quillon
