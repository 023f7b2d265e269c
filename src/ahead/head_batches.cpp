// SPDX-License-Identifier: MIT
#include "ahead/head_batches.h"

namespace quillon {

namespace {

// What comes from memory comes in a few microseconds.
constexpr std::chrono::microseconds kSlowHead{100};
// One of a batch may be that of a thread that lost its processor.
constexpr unsigned kSlowHeads = 2;
// A batch takes some hundred microseconds, and longer where others hold the processors.
constexpr std::chrono::milliseconds kSlowBatch{20};

}  // namespace

HeadBatches::HeadBatches(StandingStill standingStill, std::size_t threads, std::shared_ptr<SourceCare> care)
    : shared_(std::make_shared<Shared>()),
      files_(care),
      threads_(threads),
      batches_(
          standingStill, threads - 1, kSlowBatch,
          [shared = shared_]() -> Ahead<Batch>::Work {
              auto files = std::make_shared<SourceFiles>(shared->care);
              return [shared, files](Batch& batch) { read(batch, *files, *shared); };
          },
          AtEnd::LeaveBehind) {
    shared_->care = std::move(care);
}

std::size_t HeadBatches::add(std::string_view path) {
    begun_->heads[begun_->count].path = path;
    return begun_->count++;
}

void HeadBatches::ask() {
    if (!batches_.hasThreads())
        for (std::size_t i = 1; i < threads_; ++i) batches_.addThread();
    batches_.leaveLast();
    if (!batches_.hasThreads())
        read(*begun_, files_, *shared_);
}

bool HeadBatches::firstArrives(std::chrono::milliseconds limit) {
    return batches_.firstArrives(limit, [this](Batch& batch) { read(batch, files_, *shared_); });
}

void HeadBatches::read(Batch& batch, SourceFiles& files, Shared& shared) {
    unsigned slow = 0;
    for (std::size_t i = 0; i < batch.count; ++i) {
        Head& head = batch.heads[i];
        head.answered = !shared.slow && !shared.care->oneAtATime();
        if (!head.answered)
            continue;
        const Moment start = momentNow();
        head.result = files.readHead(head.path, head.bytes);
        slow += momentNow() - start > kSlowHead ? 1 : 0;
        if (slow == kSlowHeads)
            shared.slow = true;
    }
}

}  // namespace quillon
