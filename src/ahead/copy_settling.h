// SPDX-License-Identifier: MIT
#pragma once

// The last step of copies: their bytes are brought to the medium, many files at once, and each gets its name then, so
// that a machine whose power is cut has no name without its bytes. A copy counts as made when its name is on the
// medium, too. A thread does so while further copies are made.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "ahead/batches_beside.h"
#include "platform/copy_file.h"
#include "platform/volume_syncs.h"

namespace quillon {

/// What became of a copy.
struct SettledCopy {
    std::int64_t number = 0;  ///< as the asker gave it
    std::string source;
    std::string target;
    tl::expected<CopyFacts, CopyError> result;
};

class CopySettling {
    struct Batch;

public:
    /// A batch goes when it has so many bytes, so many files (fewer where the process may open few), or is so old.
    static constexpr std::uint64_t kMostBytes = 128UL * 1024 * 1024;
    static constexpr std::size_t kMostFiles = 1000;
    static constexpr std::chrono::seconds kLongest{5};

    /// Without `care.sync` each copy gets its name at once.
    explicit CopySettling(const CopyCare& care);
    CopySettling(const CopySettling&) = delete;
    CopySettling& operator=(const CopySettling&) = delete;

    /// True when `add` may be called. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool roomWithin(std::chrono::milliseconds limit);
    /// Takes a copy over; there must be room.
    void add(std::int64_t number, std::string source, PreparedCopy copy);

    /// What came to its end since the last call, in the order of the adding where nothing failed. Throws std::bad_alloc
    /// when the thread was out of memory.
    [[nodiscard]] std::vector<SettledCopy> takeEnded();

    /// Nothing more will be added.
    void close();
    /// True when all has come to its end. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool endsWithin(std::chrono::milliseconds limit);

private:
    struct Item {
        std::int64_t number;
        std::string source;
        PreparedCopy copy;
    };
    struct Batch {
        std::vector<Item> items;
        std::uint64_t bytes = 0;

        [[nodiscard]] bool empty() const { return items.empty(); }
        void clear() {
            items.clear();
            bytes = 0;
        }
    };
    using Arrived = tl::expected<CopyFacts, CopyError>;

    [[nodiscard]] bool put(Batch& batch, Item& item) const;
    void work(Batch& batch);
    void settle(Batch& batch);
    [[nodiscard]] Arrived arrive(Item& item) const;
    [[nodiscard]] Arrived finish(Item& item);
    [[nodiscard]] Arrived copyAnew(const Item& item);
    void tell(std::vector<SettledCopy> ended);

    const CopyCare care_;
    const std::size_t mostFiles_;
    bool beside_ = false;  // a thread works
    Batch own_;            // where none does

    // The worker's alone.
    VolumeSyncs syncs_;
    FileCopier copier_;
    std::vector<SettledCopy> named_;  // not known to be on the medium yet

    std::atomic<bool> memoryShort_ = false;
    std::mutex mutex_;
    std::vector<SettledCopy> ended_;  // guarded by mutex_

    BatchesBeside<Batch> batches_;  // goes first: its thread works on all of this
};

}  // namespace quillon
