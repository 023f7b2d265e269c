// SPDX-License-Identifier: MIT
#pragma once

// Heads of files, asked for before they are needed. A head that lies in memory is read in line, as nothing is quicker;
// one that a disk or a server has to be waited for is read by a thread, many at a time, so that a slow source is kept
// busy and whoever needs the head can do something else until it comes. What is read and how is that of SourceFiles. A
// source that needs care is asked for one head at a time.

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "ahead/ahead.h"
#include "ahead/turn_with_care.h"
#include "platform/source_care.h"
#include "platform/source_files.h"

namespace quillon {

class HeadsAhead final : public HeadReader {
    struct Asked : TurnWithCare {
        std::string path;
        HeaderBytes head;
        Result<std::size_t> result;
    };

public:
    /// So many heads can be asked for at once: where one file in fifty takes its time, the others are not to wait for
    /// it.
    static constexpr std::size_t kMost = 512;

    /// What a thread reads with; what it uses is not the owner's of this.
    using MakeReader = std::function<std::unique_ptr<HeadReader>()>;

    /// Where `ask` may not stand still for the first slow head, every head comes without waiting, at the price of one
    /// more look at each file. `makeReader` empty: SourceFiles.
    explicit HeadsAhead(StandingStill standingStill, MakeReader makeReader = {},
                        std::shared_ptr<SourceCare> care = std::make_shared<SourceCare>());

    /// Asks for a head, behind those asked for before; at most kMost at a time.
    void ask(std::string_view nativePath);
    [[nodiscard]] std::size_t asked() const { return ahead_.asked(); }
    /// How many heads it is worth to ask for now: one as long as they lie in memory, kMost behind one that did not.
    [[nodiscard]] std::size_t worthAsking() const { return care_->oneAtATime() ? 1 : ahead_.worthAsking(); }

    /// True when the first of the heads asked for is at hand. Waits for it, but not longer than `limit`.
    [[nodiscard]] bool firstArrives(std::chrono::milliseconds limit);
    /// Forgets the first of the heads asked for; it must be at hand.
    void dropFirst() { ahead_.dropFirst(); }
    /// Forgets the first of the heads asked for, although it has not come.
    void giveUpFirst() { ahead_.giveUpFirst(); }

    /// Replaces `head` by the first of the heads asked for, waiting for it without a limit. As readHead.
    [[nodiscard]] Result<std::size_t> readFirst(HeaderBytes& head);

    /// Reads in line, whatever was asked for.
    [[nodiscard]] Result<std::size_t> readHead(std::string_view nativePath, HeaderBytes& head) override {
        return files_.readHead(nativePath, head);
    }

    /// Forgets every head, ends the threads, and lets go of the last folder, so that nothing of the source stays open
    /// but what a thread hangs at.
    void release();

private:
    void askForOne(Asked& asked);
    void readInLine(Asked& asked);
    [[nodiscard]] bool readWhatLiesInMemory(Asked& asked);

    StandingStill standingStill_;
    std::shared_ptr<SourceCare> care_;
    SourceFiles files_;
    Ahead<Asked, kMost> ahead_;
};

}  // namespace quillon
