// SPDX-License-Identifier: MIT
#pragma once

// The rows of the raw list for the testing pass. It looks some rows ahead and asks for the heads of the files that will
// be tested, so that a slow source is kept busy; those of a quick one it has read in batches, so that more than one
// processor is. And it lets the event loop turn until the head of the next row is at
// hand, between two rows and never within one, so that a source that hangs does not hold a window. What an earlier run
// knows of a file is not asked of the source.

#include <algorithm>
#include <optional>

#include "ahead/head_batches.h"
#include "ahead/ring.h"
#include "app/event_loop.h"
#include "app/file_list.h"
#include "job/file_grader.h"
#include "job/known_file.h"
#include "job/source_wait.h"

namespace quillon {

class RowsAhead final : public HeadReader {
public:
    /// All must outlive this. When it goes, nothing of the source stays open.
    RowsAhead(ListReader& list, FileGrader& grader, EventLoop& loop, KnownFiles& known);
    ~RowsAhead() override { grader_.releaseSource(); }
    RowsAhead(const RowsAhead&) = delete;
    RowsAhead& operator=(const RowsAhead&) = delete;

    /// The next row, the caller's own until the next call; null at the end of the list, and where a command was told
    /// to stop while it waited for the row's head. A head that takes longer than the limit of the job's options is
    /// given up, and so is one that has to be waited for very long when the person presses Stop.
    [[nodiscard]] ListRow* next();

    /// The head of the row that `next` gave last, and of no other file: the one that was asked for ahead, or read in
    /// line by the row's path.
    [[nodiscard]] Result<std::size_t> readHead(std::string_view nativePath, HeaderBytes& head) override;
    /// What an earlier run found of that row's file, where that is all there is of it; null otherwise.
    [[nodiscard]] const KnownVerdict* knownVerdict();

private:
    // From where the head of a row comes.
    enum class Head {
        NotNeeded,
        Asked,    ///< by itself, ahead
        InBatch,  ///< with those of other rows
        Later,    ///< its batch has left it out
        GivenUp   ///< it did not come
    };
    struct AheadRow {
        ListRow row;
        Head head = Head::NotNeeded;
        std::size_t place = 0;   // in its batch
        bool endsBatch = false;  // the last row of one
        KnownFile known;
    };
    static constexpr std::size_t kMostRows = std::max(HeadsAhead::kMost, HeadBatches::kHeads* HeadBatches::kBatches);

    void leaveRow();
    void lookAhead();
    void chooseBatches();
    void askForHeads();
    [[nodiscard]] bool readRow();
    void ask(AheadRow& row);
    [[nodiscard]] bool wantsHead(AheadRow& row);
    void askForBatches();
    void askForBatch();
    void leaveBatches();
    [[nodiscard]] bool headComes(AheadRow& row);
    [[nodiscard]] bool batchComes(AheadRow& row);
    enum class Came { Yes, GivenUp, Stopped };
    template <typename Arrives>
    [[nodiscard]] Came waitFor(const AheadRow& row, Arrives arrives);
    [[nodiscard]] bool isLongEnough();
    void giveUp(AheadRow& row);

    ListReader& list_;
    FileGrader& grader_;
    EventLoop& loop_;
    KnownFiles& known_;
    Ring<AheadRow> rows_{kMostRows};
    std::size_t decided_ = 0;  // rows at the front of which it is known from where their heads come
    std::optional<HeadBatches> batches_;
    unsigned quickRows_ = 0;    // in a row that were asked for one by one
    bool inBatches_ = false;    // the rows to come are asked for in batches
    bool batchAtHand_ = false;  // the first one
    bool listEnded_ = false;
    SourceWait wait_;
    std::chrono::seconds patience_ = SourceWait::kNamedAfter;  // of one who has pressed Stop
    bool inWork_ = false;                                      // the first row was given out
};

}  // namespace quillon
