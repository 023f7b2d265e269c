// SPDX-License-Identifier: MIT
#pragma once

// The sorted list "Extension" of the viewer: the extensions of its rows in lower case, and which one is chosen.

#include <string>
#include <string_view>
#include <vector>

#include "viewer/view_rows.h"

namespace quillon {

class ExtensionList {
public:
    void clear();

    /// Takes the extensions of the rows. Without rows nothing happens. The chosen entry stays chosen if it is still
    /// there.
    /// Kept: an empty extension among others is an entry, but the only one is none (tests
    /// AnEmptyExtensionAmongOthersIsAnEntry, AnEmptyExtensionAloneGivesNoEntry).
    void rebuild(const ViewRows& rows);

    /// One entry more, equal ones side by side.
    void add(std::u16string extension);

    [[nodiscard]] const std::vector<std::u16string>& entries() const { return entries_; }
    /// From 0, -1 for none.
    [[nodiscard]] int chosen() const { return chosen_; }
    void choose(int entry) { chosen_ = entry; }
    /// Empty when none is chosen.
    [[nodiscard]] std::u16string_view chosenText() const;
    /// The first entry that equals the text; -1 when none does.
    [[nodiscard]] int find(std::u16string_view extension) const;

private:
    std::vector<std::u16string> entries_;
    int chosen_ = -1;
};

}  // namespace quillon
