// SPDX-License-Identifier: MIT
#pragma once

// The rows of the raw list for the testing pass. It looks some rows ahead and asks for the heads of the files that will
// be tested, so that a slow source is kept busy; and it lets the event loop turn until the head of the next row is at
// hand, between two rows and never within one, so that a source that hangs does not hold a window. What an earlier run
// knows of a file is not asked of the source.

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
    RowsAhead(ListReader& list, FileGrader& grader, EventLoop& loop, KnownFiles& known)
        : list_(list), grader_(grader), loop_(loop), known_(known), wait_(grader.context()) {}
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
    struct AheadRow {
        ListRow row;
        bool asked = false;    // for its head
        bool givenUp = false;  // its head did not come
        KnownFile known;
    };

    void leaveRow();
    [[nodiscard]] bool headComes(AheadRow& row);
    [[nodiscard]] bool isLongEnough();
    void giveUp(AheadRow& row);
    void lookAhead();
    void askForHead(AheadRow& ahead);

    ListReader& list_;
    FileGrader& grader_;
    EventLoop& loop_;
    KnownFiles& known_;
    Ring<AheadRow> rows_{HeadsAhead::kMost};
    SourceWait wait_;
    std::chrono::seconds patience_ = SourceWait::kNamedAfter;  // of one who has pressed Stop
    bool inWork_ = false;                                      // the first row was given out
};

}  // namespace quillon
