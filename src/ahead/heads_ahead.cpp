// SPDX-License-Identifier: MIT
#include "ahead/heads_ahead.h"

namespace quillon {

namespace {

// A solid-state disk gives four times the files to sixteen readers, and hardly more to sixty-four.
constexpr std::size_t kThreads = 16;
// What comes from memory comes in a few microseconds, what comes from a disk in a hundred and more.
constexpr std::chrono::microseconds kSlow{100};

}  // namespace

HeadsAhead::HeadsAhead(StandingStill standingStill, MakeReader makeReader)
    : ahead_(standingStill, kThreads, kSlow, [makeReader = std::move(makeReader)]() -> Ahead<Asked>::Work {
          return [reader = std::shared_ptr(makeReader())](Asked& asked) {
              asked.result = reader->readHead(asked.path, asked.head);
          };
      }) {
}

void HeadsAhead::ask(std::string_view nativePath) {
    ahead_.ask().path = nativePath;
    ahead_.doLast([this](Asked& asked) { return readWhatLiesInMemory(asked); },
                  [this](Asked& asked) { asked.result = files_.readHead(asked.path, asked.head); });
}

// A failure lies in memory, too.
bool HeadsAhead::readWhatLiesInMemory(Asked& asked) {
    const Result<std::optional<std::size_t>> attempt = files_.tryHead(asked.path, asked.head);
    asked.result = attempt.map([](std::optional<std::size_t> count) { return count.value_or(0); });
    return !attempt || attempt->has_value();
}

Result<std::size_t> HeadsAhead::readFirst(HeaderBytes& head) {
    ahead_.waitForFirst();
    head = ahead_.first().head;
    return ahead_.first().result;
}

void HeadsAhead::release() {
    ahead_.release();
    files_.closeFolder();
}

}  // namespace quillon
