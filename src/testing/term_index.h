// SPDX-License-Identifier: MIT
#pragma once

// The terms of all extensions at once: whose header is this?

#include <array>
#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "testing/header_term.h"

namespace quillon {

/// A term that is long enough to tell its format without the name of the file: at a fixed position at least four bytes,
/// anywhere at least eight; at least three, or four, of them different.
[[nodiscard]] bool isTelling(const CompiledTerm& term);

class TermIndex {
public:
    /// Takes the telling ones among the terms of an extension.
    void add(std::string_view extension, const std::vector<CompiledTerm>& terms);

    /// Compiles the term files of a database folder. Files that cannot be read are left out, as by the header test.
    [[nodiscard]] static TermIndex ofFolder(const NativePath& databaseFolder);

    struct Match {
        std::size_t length = 0;               ///< of the longest term that fits, in bytes; 0 without one
        std::vector<std::string> extensions;  ///< those with a term of this length, sorted
    };

    /// `folded` is a header behind `foldHeader`.
    [[nodiscard]] Match find(const HeaderBytes& folded) const;

    [[nodiscard]] std::size_t size() const { return terms_.size(); }

private:
    struct Entry {
        CompiledTerm term;
        std::string extension;
    };
    using Key = std::uint32_t;  // four bytes of a term
    using Places = std::unordered_multimap<Key, std::uint32_t>;

    // Terms at one offset, and which bytes are the first and the second one of any: most heads need no look among them.
    struct Place {
        std::size_t offset = 0;
        std::bitset<256> begins;
        std::bitset<256> goesOn;
        Places terms;
    };

    [[nodiscard]] Place& placeAt(std::size_t offset);
    void consider(const Places& places, Key key, const HeaderBytes& folded, Match& best) const;

    std::vector<Entry> terms_;
    std::vector<Place> fixed_;
    Places anywhere_;
    std::bitset<65536> mayBegin_;  // by the first two bytes of what may stand anywhere
    std::bitset<65536> mayGoOn_;   // by the two behind them
};

}  // namespace quillon
