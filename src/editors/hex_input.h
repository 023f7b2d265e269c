// SPDX-License-Identifier: MIT
#pragma once

// A hexadecimal term as a person types it.

#include <string>
#include <string_view>

#include "app/dialogs.h"

namespace quillon {

/// "01 0a" -> "010A".
[[nodiscard]] std::string withoutBlanksInCapitals(std::string_view text);

enum class HexFault {
    None,
    OddLength,        ///< looked at first
    OtherCharacters,  ///< than digits
};

/// What is wrong with a term in the form of `withoutBlanksInCapitals`. The empty term is right.
[[nodiscard]] HexFault findHexFault(std::string_view term);

/// Brings the term into the form of the files and checks it. False after a box told that it is of odd length or holds
/// other characters than digits; the term is in its new form all the same.
[[nodiscard]] bool acceptHexTerm(std::string& term, Dialogs& dialogs);

}  // namespace quillon
