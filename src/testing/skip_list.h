// SPDX-License-Identifier: MIT
#pragma once

// The skip list: patterns of files that the walk leaves out. docs/formats/rule-lists.md.

#include <array>
#include <bitset>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/lost_note.h"
#include "text/wildcard.h"

namespace quillon {

class SkipList {
public:
    /// Takes the lines of a file in order. A pattern that does not begin or end with "*" gets one there; so an empty
    /// line becomes a single "*" and matches everything. Case does not count, and "\" and "/" are the same.
    void assign(const std::vector<std::u16string>& lines);

    [[nodiscard]] bool empty() const { return patterns_.empty(); }
    /// The patterns as normalised, in order.
    [[nodiscard]] const std::vector<std::u16string>& patterns() const { return patterns_; }

    /// True when a pattern fits the path in its list form. A pattern that is not one (a "[" without its "]") ends
    /// the comparison, and the file is kept unless an earlier pattern fits.
    [[nodiscard]] bool matches(std::u16string_view listPath) const;

private:
    // A piece of text that a path must hold to fit a pattern. A pattern without wildcards of its own is that text
    // alone.
    struct Clue {
        std::u16string text;
        std::optional<WildcardPattern> pattern;
    };
    [[nodiscard]] static bool fits(const Clue& clue, std::u16string_view path);
    [[nodiscard]] static bool begins(std::u16string_view rest, const Clue& clue);

    std::vector<std::u16string> patterns_;
    // Clues are looked for all at once, by the hash of their first two characters; shorter ones one by one. Most places
    // of a path can begin no clue, which one bit tells.
    std::bitset<4096> starts_;
    std::array<std::vector<Clue>, 256> cluesByStart_;
    std::vector<Clue> shortClues_;
    mutable std::u16string folded_;  // room for the path in work
};

/// What `loadSkipList` found, besides the list itself.
enum class SkipListState { Available, Missing, Unreadable };

/// With sharing on, puts the shared file over the local one when there is one, for the job of this ID. After a failure
/// the local file serves.
[[nodiscard]] Result<LostNote> fetchSkipList(const Paths& paths, KeptFiles& kept, const std::string& job = {});

/// Loads the list for a job, behind `fetchSkipList`. When sharing is on and neither file is there, the answer is
/// Missing and the caller clears and disables `chkUseSkip`. The local file is read when `wanted` (`chkUseSkip` is
/// ticked) and it exists; otherwise, and for a file without lines, the list stays as it was, and so it does for one
/// that cannot be read, whose answer is Unreadable.
[[nodiscard]] SkipListState loadSkipList(const Installation& installation, bool wanted, SkipList& list);

/// What `chkUseSkip` becomes when settings are applied.
struct SkipAvailability {
    bool result = false;           ///< with sharing on: the list exists on the share or here; without: always false
    bool appliesToBox = false;     ///< false leaves the check box as it is
    bool enabled = false;          ///< for the box, and
    bool ticked = false;           ///< its value
    const char* status = nullptr;  ///< a text for `Label8`, or null
};
[[nodiscard]] SkipAvailability checkSkipAvailable(const Installation& installation);

}  // namespace quillon
