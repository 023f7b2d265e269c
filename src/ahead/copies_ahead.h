// SPDX-License-Identifier: MIT
#pragma once

// Copies of many files, in the order of their asking. Threads bring the bytes of small files over before their turn
// comes, which nobody sees: each is given out at its turn and not before, whole but for its name, and a failure is told
// then. A large file, or one that could not be opened or made ahead, is copied at its turn; where the caller's thread
// may not stand still, that is done by a thread, too.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ahead/ahead.h"
#include "platform/copy_file.h"
#include "platform/source_care.h"

namespace quillon {

class CopiesAhead {
    struct Copy;

public:
    /// So many copies can be asked for at once.
    static constexpr std::size_t kMost = Ahead<Copy>::kMost;
    /// A larger file, in bytes, waits for its turn.
    static constexpr std::uint64_t kLargest = 1024UL * 1024;

    /// A caller's thread that may stand still prepares files, too. Of a source that `care` is taken of nothing is read
    /// ahead of its turn; null for none.
    explicit CopiesAhead(StandingStill standingStill, const CopyManner& manner = {},
                         std::shared_ptr<SourceCare> care = nullptr);
    ~CopiesAhead() { release(); }
    CopiesAhead(const CopiesAhead&) = delete;
    CopiesAhead& operator=(const CopiesAhead&) = delete;

    /// Asks for a copy as FileCopier makes it, behind those asked for before; at most kMost at a time.
    void ask(std::string_view source, std::string_view target);
    [[nodiscard]] std::size_t asked() const { return ahead_.asked(); }

    /// The turn of the first copy. False: it has to be waited for longer than `limit`, and this is to be called again.
    /// `progress` is called from here alone; what a thread has done meanwhile is told at each call.
    [[nodiscard]] bool firstEnds(std::chrono::milliseconds limit, const CopyProgress& progress);
    /// What came of the first copy, which must have ended. It is forgotten.
    [[nodiscard]] tl::expected<PreparedCopy, CopyError> takeFirst();

    /// Forgets all copies asked for, of which nothing stays, and waits for the threads to end.
    void release();

private:
    using Prepared = tl::expected<PreparedCopy, CopyError>;

    struct Copy {
        std::string source;
        std::string target;
        std::optional<Prepared> prepared;
        std::atomic<std::uint64_t> size = 0;

        bool itsTurn = false;  // a thread is to copy it whatever its size
        std::atomic<std::uint64_t> done = 0;
        std::atomic<bool> cancelled = false;
    };

    void startThreads();
    void work(Copy& copy, FileCopier& copier);
    void prepare(Copy& copy, FileCopier& copier);
    [[nodiscard]] bool mayMakeWait(const Copy& copy) const;
    [[nodiscard]] bool endsBeside(Copy& copy, std::chrono::milliseconds limit, const CopyProgress& progress);
    void finish(Copy& copy, FileCopier& copier, const CopyProgress& progress);

    StandingStill standingStill_;
    std::shared_ptr<SourceCare> care_;
    FileCopier copier_;
    std::atomic<bool> ending_ = false;
    Ahead<Copy> ahead_;
};

}  // namespace quillon
