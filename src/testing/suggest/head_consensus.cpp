// SPDX-License-Identifier: MIT
#include "testing/suggest/head_consensus.h"

#include <algorithm>

#include <fmt/format.h>

#include "text/numbers.h"

namespace quillon {

namespace {

constexpr std::size_t kMostRunsTold = 6;

bool mayBeMark(const HeadConsensus& consensus, const SharedRun& run) {
    const auto first = consensus.places.begin() + run.first;
    return run.count > 1 && std::any_of(first, first + run.count,
                                        [&](const HeadConsensus::Place& place) { return place.byte != first->byte; });
}

std::string runText(const SharedRun& run) {
    return run.count == 1 ? std::to_string(run.first + 1) : fmt::format("{}-{}", run.first + 1, run.first + run.count);
}

}  // namespace

void HeadCounter::add(std::string_view head) {
    ++files_;
    if (counts_.size() < head.size())
        counts_.resize(head.size(), Bytes{});
    for (std::size_t i = 0; i < head.size(); ++i) ++counts_[i][static_cast<unsigned char>(head[i])];
}

HeadConsensus HeadCounter::result() const {
    HeadConsensus consensus;
    consensus.files = files_;
    consensus.places.reserve(counts_.size());
    for (const Bytes& bytes : counts_) {
        const auto most = std::ranges::max_element(bytes);
        consensus.places.push_back({static_cast<unsigned char>(most - bytes.begin()), *most});
    }
    return consensus;
}

std::vector<SharedRun> sharedRuns(const HeadConsensus& consensus) {
    std::vector<SharedRun> runs;
    for (std::size_t i = 0; i < consensus.places.size(); ++i) {
        if (!consensus.isShared(i))
            continue;
        if (i > 0 && consensus.isShared(i - 1))
            ++runs.back().count;
        else
            runs.push_back({static_cast<int>(i), 1});
    }
    return runs;
}

std::optional<SharedRun> nextMark(const HeadConsensus& consensus, int behind) {
    auto runs = sharedRuns(consensus);
    std::erase_if(runs, [&](const SharedRun& run) { return !mayBeMark(consensus, run); });
    if (runs.empty())
        return std::nullopt;
    const auto next = std::ranges::find_if(runs, [behind](const SharedRun& run) { return run.first > behind; });
    return next == runs.end() ? runs.front() : *next;
}

std::string consensusText(const HeadConsensus& consensus) {
    if (consensus.files < 2)
        return consensus.files == 0 ? std::string() : std::string("One file: nothing to compare it with");
    const auto runs = sharedRuns(consensus);
    const std::string files = grouped(consensus.files);
    if (runs.empty())
        return fmt::format("These {} files share no byte", files);
    std::size_t shared = 0;
    std::string places;
    for (std::size_t i = 0; i < runs.size(); ++i) {
        shared += static_cast<std::size_t>(runs[i].count);
        if (i < kMostRunsTold)
            places += (i == 0 ? "" : ", ") + runText(runs[i]);
    }
    return fmt::format("All {} files share {} of {} bytes: {}{}", files, shared, consensus.places.size(), places,
                       runs.size() > kMostRunsTold ? ", ..." : "");
}

std::string placeText(const HeadConsensus& consensus, int place) {
    if (place < 0 || static_cast<std::size_t>(place) >= consensus.places.size())
        return {};
    const auto& one = consensus.places[static_cast<std::size_t>(place)];
    const std::string files = grouped(consensus.files);
    const std::string which = consensus.isShared(static_cast<std::size_t>(place))
                                  ? fmt::format("all {}", files)
                                  : fmt::format("{} of {}", grouped(one.files), files);
    return fmt::format("Byte {}: {:02X} in {} files", place + 1, one.byte, which);
}

}  // namespace quillon
