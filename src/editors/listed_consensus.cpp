// SPDX-License-Identifier: MIT
#include "editors/listed_consensus.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "evidence/evidence_reader.h"
#include "job/evidence_facts.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr const char* kEvidenceEnding = ".sqlite";

// Heads as the job has read them, by the whole paths of files.
class KeptOfJob {
public:
    explicit KeptOfJob(const BenchWish& wish) {
        if (wish.listFolder.empty() || wish.job.empty())
            return;
        if (auto opened = EvidenceReader::open(wish.listFolder / (wish.job + kEvidenceEnding))) {
            places_.emplace(sourceIn(*opened));
            reader_.emplace(std::move(*opened));
        }
    }

    [[nodiscard]] std::optional<FileHead> head(std::string_view path) {
        if (!reader_)
            return std::nullopt;
        if (const auto found = reader_->findPath(places_->below(path), row_); !found || !*found || !row_.head)
            return std::nullopt;
        const auto head = reader_->head(row_);
        return head && *head != nullptr ? std::optional(**head) : std::nullopt;
    }

private:
    std::optional<EvidenceReader> reader_;
    std::optional<RowDescriber> places_;
    EvidenceRow row_;
};

}  // namespace

HeadConsensus consensusOf(const BenchWish& wish, const std::atomic<bool>& stop) {
    KeptOfJob kept(wish);
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
