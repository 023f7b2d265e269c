// SPDX-License-Identifier: MIT
#pragma once

// Numbers as the screens and files write and read them.

#include <cstdint>
#include <string>
#include <string_view>

namespace quillon {

/// Plain number-to-text: a blank stands ahead of a number that is not negative. 1234 -> " 1234", -5 -> "-5".
[[nodiscard]] std::string plainNumber(std::int64_t number);
void appendPlainNumber(std::u16string& out, std::uint64_t number);

/// The pattern "#,0": 1234567 -> "1,234,567".
[[nodiscard]] std::string grouped(std::int64_t number);

/// The pattern "#,0.0": 1234.56 -> "1,234.6". A number pattern rounds the decimal number that a person would write
/// (fifteen digits), and a half goes away from zero: 1.25 -> "1.3". What is not finite shows as 0.
[[nodiscard]] std::string groupedOneDecimal(double number);

/// The pattern "0.00%" (the same as "#0.00%"), which multiplies by 100: 0.75 -> "75.00%". Rounds as above.
[[nodiscard]] std::string percent(double fraction);

/// Size display with strict comparisons, first match wins: above 1024^4 "Tb", above 1024^3 "Gb", above 1024^2 "Mb",
/// above 1024 "Kb", each with one decimal; otherwise whole bytes. 1024 -> "1,024 Bytes", 1048577 -> "1.0 Mb".
[[nodiscard]] std::string sizeText(std::uint64_t bytes);

/// The lenient reading of a number in a field: blanks are skipped, reading stops at the first character that cannot
/// continue a number (sign, digits, one point, an exponent), and no number gives 0. One beyond all range is infinite. "
/// 12;x" -> 12, "abc" -> 0, "-3" -> -3.
[[nodiscard]] double numericPrefix(std::u16string_view text);
[[nodiscard]] double numericPrefix(std::string_view text);

/// A text box that holds a number, read by its leading digits; no digits read as 0. Values above the range of a
/// 32-bit count stop at its end.
[[nodiscard]] std::int32_t leadingNumber(std::string_view text);

/// A position or argument rounded to a whole number, halves to the even one, held within the range of 32 bits.
[[nodiscard]] std::int32_t roundedNumber(double number);

}  // namespace quillon
