// SPDX-License-Identifier: MIT
#pragma once

// What a database says of wrecked files: good samples are damaged in the ways in which recoveries go wrong, and none of
// them should count as recovered.

#include <array>
#include <string_view>
#include <vector>

#include "dbcheck/header_database.h"
#include "dbcheck/samples.h"

namespace quillon {

/// What takes the place of a head, or of a part of it.
enum class Damage {
    Zeros,
    Ones,        ///< bytes of FF
    Random,      ///< noise
    Text,        ///< plain words
    Shift1,      ///< the head behind one byte of noise: the file begins too early
    Shift16,     ///< behind 16,
    Shift100,    ///< 100
    Shift512,    ///< and 512 bytes: none of it is left
    Gone16,      ///< the first 16 bytes are zeros
    ForeignHead  ///< the head of another extension's sample, outside the families
};

struct DamageKind {
    Damage damage;
    std::string_view name;  ///< on the command line and in the table
};

inline constexpr std::array<DamageKind, 10> kDamages = {{{Damage::Zeros, "zeros"},
                                                         {Damage::Ones, "ff"},
                                                         {Damage::Random, "random"},
                                                         {Damage::Text, "text"},
                                                         {Damage::Shift1, "shift-1"},
                                                         {Damage::Shift16, "shift-16"},
                                                         {Damage::Shift100, "shift-100"},
                                                         {Damage::Shift512, "shift-512"},
                                                         {Damage::Gone16, "gone-16"},
                                                         {Damage::ForeignHead, "foreign"}}};

struct DamageScore {
    DamageKind kind;
    std::size_t samples = 0;  ///< good before
    std::size_t good = 0;     ///< still fitting a term of their extension
    std::size_t named = 0;    ///< of the others, those that a common header names: they count as recovered, too

    /// Good or wrongly named, in percent of the samples; 0 when there are none. The name of a foreign head is right.
    [[nodiscard]] double recoveredPercent() const;
};

/// One score for each kind of damage, in their order. Samples that are too small or not good as they are take no part;
/// for a foreign head also those for which there is none. The noise is the same in every run.
[[nodiscard]] std::vector<DamageScore> scoreDamage(const HeaderDatabase& database, const std::vector<Sample>& samples);

}  // namespace quillon
