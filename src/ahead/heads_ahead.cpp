// SPDX-License-Identifier: MIT
#include "ahead/heads_ahead.h"

namespace quillon {

namespace {

// A solid-state disk gives four times the files to sixteen readers and a tenth more to thirty-two, a far server twice
// as many once more.
constexpr std::size_t kThreads = 32;
// What comes from memory comes in a few microseconds, what comes from a disk in a hundred and more.
constexpr std::chrono::microseconds kSlow{100};

}  // namespace

HeadsAhead::HeadsAhead(StandingStill standingStill, MakeReader makeReader, std::shared_ptr<SourceCare> care)
    : standingStill_(standingStill),
      care_(std::move(care)),
      files_(care_),
      ahead_(
          standingStill, kThreads, kSlow,
          [makeReader = std::move(makeReader), care = care_]() -> Ahead<Asked, kMost>::Work {
              std::shared_ptr<HeadReader> reader = makeReader ? makeReader() : std::make_unique<SourceFiles>(care);
              return [reader, care](Asked& asked) {
                  asked.answer(*care, [&] { asked.result = reader->readHead(asked.path, asked.head); });
              };
          },
          AtEnd::LeaveBehind) {
}

void HeadsAhead::ask(std::string_view nativePath) {
    Asked& asked = ahead_.ask();
    asked.path = nativePath;
    asked.begin(*care_);
    if (asked.itsTurn) {
        askForOne(asked);
        return;
    }
    ahead_.doLast([this](Asked& mine) { return readWhatLiesInMemory(mine); },
                  [this](Asked& mine) { readInLine(mine); });
}

void HeadsAhead::askForOne(Asked& asked) {
    if (standingStill_ == StandingStill::Never && !ahead_.hasThreads())
        ahead_.addThread();
    if (standingStill_ == StandingStill::Never && ahead_.hasThreads())
        ahead_.leaveLast();
    else
        readInLine(asked);
}

bool HeadsAhead::firstArrives(std::chrono::milliseconds limit) {
    return firstIsAnswered(ahead_, standingStill_, limit, [this](Asked& asked) { readInLine(asked); });
}

void HeadsAhead::readInLine(Asked& asked) {
    asked.result = files_.readHead(asked.path, asked.head);
}

// A failure lies in memory, too.
bool HeadsAhead::readWhatLiesInMemory(Asked& asked) {
    const Result<std::optional<std::size_t>> attempt = files_.tryHead(asked.path, asked.head);
    asked.result = attempt.map([](std::optional<std::size_t> count) { return count.value_or(0); });
    return !attempt || attempt->has_value();
}

Result<std::size_t> HeadsAhead::readFirst(HeaderBytes& head) {
    constexpr std::chrono::milliseconds kLong = std::chrono::hours(1);
    while (!firstArrives(kLong)) continue;
    head = ahead_.first().head;
    return ahead_.first().result;
}

void HeadsAhead::release() {
    ahead_.release();
    files_.closeFolder();
}

}  // namespace quillon
