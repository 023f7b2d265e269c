// SPDX-License-Identifier: MIT
#pragma once

// Three-way merge of lists whose order and whose equal records count: what two workstations made of one list, put
// together record by record. Pure functions.

#include <string>
#include <vector>

namespace quillon {

/// The records of a list in their order, without line ends.
using Records = std::vector<std::string>;

/// What becomes of a record that both sides changed, each in its own way.
enum class MergeChoice {
    Tell,   ///< it is told; until somebody decides, theirs stands
    Ours,   ///< ours stands
    Theirs  ///< theirs stands
};

/// One record that both sides changed. An empty text is a record that this side deleted; where all three are empty,
/// the records were put in two different orders.
struct RecordConflict {
    std::string base;
    std::string ours;
    std::string theirs;

    friend bool operator==(const RecordConflict&, const RecordConflict&) = default;
};

struct RecordMerge {
    Records records;
    std::vector<RecordConflict> conflicts;  ///< whatever the choice was
};

/// Puts together what two sides made of `base`. What one side alone added, deleted, changed in its place or moved is
/// so in the result; what both added equally stands there once. New records stand behind the record that they were put
/// behind, first theirs, then ours; what we put at the end of the list stands at its end. Where the same record was
/// changed in two ways (or deleted by one side and changed by the other), or the common ones were put in two different
/// orders, there is a conflict.
///
/// Equal records are told apart by their number: the second "1,PK,T" of one list is the second of the others.
/// `ours` comes back as it is where `theirs` equals `base`, and `theirs` where `ours` does.
[[nodiscard]] RecordMerge mergeRecords(const Records& base, const Records& ours, const Records& theirs,
                                       MergeChoice choice = MergeChoice::Tell);

/// The same for a list in which the place tells what a record means: each place by itself. A place that a list lacks
/// is an empty record.
[[nodiscard]] RecordMerge mergePlaces(const Records& base, const Records& ours, const Records& theirs,
                                      MergeChoice choice = MergeChoice::Tell);

}  // namespace quillon
