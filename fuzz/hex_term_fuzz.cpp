// SPDX-License-Identifier: MIT
// Any text as a hexadecimal term and as a number: one byte for a pair, and the two readings of a number agree.
#include <cctype>
#include <cmath>

#include "input.h"
#include "testing/header_term.h"
#include "text/numbers.h"

namespace {

using namespace quillon;

// The value of a pair read as hexadecimal, another way than the program's.
int valueOf(std::string_view pair) {
    for (const char c : pair) {
        if (std::isxdigit(static_cast<unsigned char>(c)) == 0)
            return 0;
    }
    return std::stoi(std::string(pair), nullptr, 16);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = fuzz::bytesOf(data, size);
    const std::string text = hexToText(bytes);
    fuzz::require(text.size() == (bytes.size() + 1) / 2, "a pair gives one byte");
    for (std::size_t i = 0; i < text.size(); ++i)
        fuzz::require(static_cast<unsigned char>(text[i]) == valueOf(std::string_view(bytes).substr(2 * i, 2)),
                      "a pair is its value");

    const double narrow = numericPrefix(std::string_view(bytes));
    const double wide = numericPrefix(std::u16string_view(fuzz::widened(bytes)));
    fuzz::require(narrow == wide && !std::isnan(narrow), "a number is read alike in both kinds of text");
    static_cast<void>(leadingNumber(bytes));
    fuzz::require(!groupedOneDecimal(narrow).empty() && !percent(narrow).empty(), "a number has a text");
    return 0;
}
