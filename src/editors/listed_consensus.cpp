// SPDX-License-Identifier: MIT
#include "editors/listed_consensus.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "editors/kept_of_job.h"
#include "text/list_text.h"

namespace quillon {

HeadConsensus consensusOf(const BenchWish& wish, const std::atomic<bool>& stop) {
    KeptOfJob kept(wish.listFolder, wish.job);
    SourceFiles disk;
    HeadCounter counter;
    std::size_t reads = 0;
    for (std::size_t i = 0; i < std::min(wish.files.size(), kMostListedHeads) && !stop; ++i) {
        const std::string path = toNative(wish.files[i]);
        if (const auto head = kept.head(path)) {
            counter.add(head->given());
        } else if (reads < kMostConsensusReads) {
            ++reads;
            HeaderBytes bytes;
            if (const auto count = disk.readHead(path, bytes); count && *count > 0)
                counter.add(std::string_view(bytes.data(), *count));
        }
    }
    return counter.result();
}

void ListedConsensus::begin(BenchWish wish) {
    auto started = startBeside(std::function<HeadConsensus()>(
        [wanted = std::move(wish), stop = stop_] { return consensusOf(wanted, *stop); }));
    if (started)
        answer_ = std::move(*started);
}

std::optional<HeadConsensus> ListedConsensus::take() {
    if (!answer_.valid() || !hasCome(answer_, std::chrono::milliseconds(0)))
        return std::nullopt;
    return answer_.get();
}

}  // namespace quillon
