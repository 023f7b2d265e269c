// SPDX-License-Identifier: MIT
#include "ahead/copy_settling.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <new>
#include <utility>

#include "platform/folders.h"
#include "platform/many_at_once.h"
#include "platform/medium_reader.h"

namespace quillon {

namespace {

// One batch waits while another one is worked on and a third one is filled.
constexpr std::size_t kWaiting = 1;
constexpr std::size_t kBatches = 3;
// What has a temporary name stays there when the process is killed.
constexpr std::size_t kMostTemporaryNames = 64;
// Of copies that are read back: up to so many bytes several at once, by so many threads, of which each has some to do.
constexpr std::uint64_t kSmall = 1024UL * 1024;
constexpr std::size_t kReaders = 8;
constexpr std::size_t kWorthAThread = 4;

std::size_t filesInBatch() {
    return std::clamp<std::size_t>(openFileLimit() / 2 / kBatches, 1, CopySettling::kMostFiles);
}

tl::unexpected<CopyError> targetFailed(FileError error) {
    return tl::unexpected<CopyError>(CopyError{CopySide::Target, std::move(error), true});
}

using Compared = tl::expected<void, CopyError>;

template <typename Item>
Compared compare(const Item& item, const CopyCare& care) {
    return care.verify && item.copy.facts.hash ? compareWithMedium(item.copy.file, *item.copy.facts.hash, item.source)
                                               : Compared();
}

// What is small waits for the medium, not for its bytes: many are read at once. Large ones side by side would only send
// a disk to and fro.
template <typename Item>
std::vector<Compared> readBack(const std::vector<Item>& items, const std::vector<Result<void>>& synced,
                               const CopyCare& care) {
    std::vector<Compared> compared(items.size());
    std::vector<std::size_t> small;
    for (std::size_t i = 0; care.verify && i < items.size(); ++i) {
        if (synced[i] && items[i].copy.facts.size <= kSmall)
            small.push_back(i);
        else if (synced[i])
            compared[i] = compare(items[i], care);
    }
    const auto work = [&](std::size_t place) { compared[small[place]] = compare(items[small[place]], care); };
    const std::size_t readers = std::min(kReaders, std::max<std::size_t>(small.size() / kWorthAThread, 1));
    if (!workOnAll(small.size(), readers - 1, work))
        throw std::bad_alloc();
    return compared;
}

}  // namespace

CopySettling::CopySettling(const CopyCare& care)
    : care_(care),
      mostFiles_(filesInBatch()),
      copier_(care.manner()),
      batches_(kWaiting, kLongest, [this](Batch& batch) { work(batch); }) {
    beside_ = care_.sync && batches_.start().has_value();
}

bool CopySettling::roomWithin(std::chrono::milliseconds limit) {
    return !beside_ || batches_.roomWithin(limit);
}

// True when the batch is full.
bool CopySettling::put(Batch& batch, Item& item) const {
    const bool temporary = item.copy.file.naming() == Naming::Rename;
    batch.bytes += item.copy.facts.size;
    batch.items.push_back(std::move(item));
    return batch.bytes >= kMostBytes || batch.items.size() >= (temporary ? kMostTemporaryNames : mostFiles_);
}

void CopySettling::add(std::int64_t number, std::string source, PreparedCopy copy) {
    Item item{number, std::move(source), std::move(copy)};
    if (beside_) {
        passOver(batches_.add([&](Batch& batch) { return put(batch, item); }), "there is room");
    } else if (put(own_, item) || !care_.sync) {
        work(own_);
        own_.clear();
    }
}

void CopySettling::work(Batch& batch) {
    try {
        settle(batch);
    } catch (const std::bad_alloc&) {
        memoryShort_ = true;
    }
}

// Names of the batch before come to the medium with the bytes of this one.
void CopySettling::settle(Batch& batch) {
    VolumeSyncs::Wish wish;
    for (const Item& item : batch.items) wish.files.push_back(&item.copy.file);
    for (const SettledCopy& copy : named_) wish.named.push_back(&copy.target);
    if (wish.files.empty() && wish.named.empty())
        return;
    VolumeSyncs::Answer synced{std::vector<Result<void>>(batch.items.size()), {}};
    if (care_.sync)
        synced = syncs_.sync(wish);
    std::vector<Compared> compared = readBack(batch.items, synced.files, care_);
    std::vector<SettledCopy> ended = std::exchange(named_, {});
    for (std::size_t i = 0; i < ended.size(); ++i) {
        if (!synced.named[i])
            ended[i].result = targetFailed(std::move(synced.named[i].error()));
    }
    for (std::size_t i = 0; i < batch.items.size(); ++i) {
        Item& item = batch.items[i];
        std::string target = item.copy.file.nativePath();
        Arrived arrived = !synced.files[i] ? targetFailed(std::move(synced.files[i].error()))
                          : compared[i]    ? finish(item)
                                           : tl::unexpected<CopyError>(std::move(compared[i].error()));
        const bool waits = arrived && care_.sync;
        (waits ? named_ : ended)
            .push_back({item.number, std::move(item.source), std::move(target), std::move(arrived)});
    }
    tell(std::move(ended));
}

CopySettling::Arrived CopySettling::arrive(Item& item) const {
    if (auto arrived = item.copy.file.arrive(); !arrived)
        return targetFailed(std::move(arrived.error()));
    return std::move(item.copy.facts);
}

CopySettling::Arrived CopySettling::finish(Item& item) {
    auto arrived = arrive(item);
    if (!arrived && item.copy.file.isStranded())
        return copyAnew(item);
    return arrived;
}

// Into the folder that was made in the place of one that went.
CopySettling::Arrived CopySettling::copyAnew(const Item& item) {
    const auto goOn = [](std::uint64_t, std::uint64_t) { return true; };
    auto copy =
        copier_.prepare(item.source, item.copy.file.nativePath(), std::numeric_limits<std::uint64_t>::max(), goOn);
    if (!copy)
        return tl::unexpected<CopyError>(std::move(copy.error()));
    Item anew{item.number, item.source, *std::move(copy)};
    if (care_.sync) {
        auto synced = syncs_.sync({{&anew.copy.file}, {}});
        if (!synced.files.front())
            return targetFailed(std::move(synced.files.front().error()));
    }
    return compare(anew, care_).and_then([&] { return arrive(anew); });
}

void CopySettling::tell(std::vector<SettledCopy> ended) {
    const std::lock_guard lock(mutex_);
    std::move(ended.begin(), ended.end(), std::back_inserter(ended_));
}

std::vector<SettledCopy> CopySettling::takeEnded() {
    if (memoryShort_)
        throw std::bad_alloc();
    const std::lock_guard lock(mutex_);
    return std::exchange(ended_, {});
}

void CopySettling::close() {
    if (beside_) {
        batches_.close();
        return;
    }
    work(own_);
    own_.clear();
    work(own_);  // the names
}

bool CopySettling::endsWithin(std::chrono::milliseconds limit) {
    return !beside_ || batches_.endsWithin(limit);
}

}  // namespace quillon
