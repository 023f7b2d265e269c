// SPDX-License-Identifier: MIT
#pragma once

// What a text loses on its way to the 8-bit page.

#include <string>
#include <string_view>

namespace quillon {

/// The characters that the page lacks, each once and in their order, as a person reads them, with blanks between; the
/// page keeps a "?" for each. At most eight, and "..." for more. Empty when nothing is lost. UTF-8.
[[nodiscard]] std::string lostOnPage(std::string_view utf8);

}  // namespace quillon
