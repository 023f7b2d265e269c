// SPDX-License-Identifier: MIT
#pragma once

// What the heads of the listed files have in common, found on a thread of its own while the screen goes on.

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "editors/bench_heads.h"
#include "platform/start_beside.h"
#include "testing/suggest/head_consensus.h"

namespace quillon {

/// So many heads that the evidence of the job lacks are read from the source, which may be slow or damaged.
inline constexpr std::size_t kMostConsensusReads = 200;

/// Of the first kMostListedHeads files: from the evidence of the job, else from the disk. Files that are gone are left
/// out. Ends early, with what it has, when `stop` is set.
[[nodiscard]] HeadConsensus consensusOf(const BenchWish& wish, const std::atomic<bool>& stop);

class ListedConsensus {
public:
    ListedConsensus() = default;
    ListedConsensus(const ListedConsensus&) = delete;
    ListedConsensus& operator=(const ListedConsensus&) = delete;
    /// Does not wait for what is under way.
    ~ListedConsensus() { *stop_ = true; }

    /// Begins to look; called once. Without a thread there is no answer.
    void begin(BenchWish wish);
    /// The answer when it has come, once. To be called again and again.
    [[nodiscard]] std::optional<HeadConsensus> take();

private:
    std::shared_ptr<std::atomic<bool>> stop_ = std::make_shared<std::atomic<bool>>(false);
    AnswerBeside<std::function<HeadConsensus()>> answer_;
};

}  // namespace quillon
