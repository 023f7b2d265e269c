// SPDX-License-Identifier: MIT
#pragma once

// The heads of files that jobs of this bench have kept in their evidence, and those of the files that a term is wanted
// for. To be called on a thread of its own: it reads whatever is there.

#include <atomic>
#include <string>
#include <vector>

#include "platform/source_files.h"
#include "testing/suggest/false_alarm.h"
#include "testing/suggest/term_suggestion.h"

namespace quillon {

/// At most so many heads are held in memory: 512 bytes each.
inline constexpr std::size_t kMostBenchHeads = 1'000'000;
/// And so many of the files that a term is wanted for.
inline constexpr std::size_t kMostListedHeads = 10'000;
/// Terms are suggested against so many heads of other extensions, the newest ones.
inline constexpr std::size_t kMostSuggestionOthers = 100'000;

struct BenchWish {
    NativePath listFolder;              ///< where the evidence of jobs stands; empty for none
    std::string extension;              ///< lower case, UTF-8
    std::string job;                    ///< the ID of the job whose files are listed; may be empty
    std::vector<std::u16string> files;  ///< the listed files, list text
};

struct Bench {
    BenchHeads known;
    std::vector<HeaderBytes> listed;  ///< folded
    std::vector<HeaderBytes> raw;     ///< the same as they were read
    bool cut = false;                 ///< there are more heads than may be held
};

/// The evidence files of a folder; an empty path or one that cannot be listed gives none.
[[nodiscard]] std::vector<NativePath> evidenceNewestFirst(const NativePath& folder);

/// Reads the newest evidence first. Evidence that cannot be read, and files that are gone, are passed over; the disk is
/// asked for a listed file only where the evidence lacks its head. Ends early, with what it has, when `stop` is set.
[[nodiscard]] Bench loadBench(const BenchWish& wish, const std::atomic<bool>& stop, std::size_t most = kMostBenchHeads);

/// A term that may be added, and whether it is text that only files of one job hold: it may be a customer's name.
struct OfferedTerm {
    TermSuggestion term;
    bool ofOneJob = false;

    friend bool operator==(const OfferedTerm&, const OfferedTerm&) = default;
};

/// The terms for the listed files of a bench, best first.
[[nodiscard]] std::vector<OfferedTerm> offerTerms(const Bench& bench, const BenchWish& wish);

}  // namespace quillon
