// SPDX-License-Identifier: MIT
#include "editors/hex_input.h"

#include "text/unicode.h"

namespace quillon {

std::string withoutBlanksInCapitals(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c != ' ')
            result.push_back(c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c);
    }
    return result;
}

HexFault findHexFault(std::string_view term) {
    // The length counts characters, not bytes.
    if (utf8ToUtf16(term).size() % 2 != 0)
        return HexFault::OddLength;
    return term.find_first_not_of("0123456789ABCDEFabcdef") == term.npos ? HexFault::None : HexFault::OtherCharacters;
}

bool acceptHexTerm(std::string& term, Dialogs& dialogs) {
    term = withoutBlanksInCapitals(term);
    switch (findHexFault(term)) {
        case HexFault::None:
            return true;
        case HexFault::OddLength:
            dialogs.warn("Error", "Invalid hex must be in pairs (e.d. 01 02 03 or 010203)");
            return false;
        case HexFault::OtherCharacters:
            dialogs.warn("Hex Error",
                         "Invalid HEX characters in string. Hex must only contain numbers 0-9 and Letter A-F");
            return false;
    }
    return false;
}

}  // namespace quillon
