// SPDX-License-Identifier: MIT
#pragma once

// What a screen reader or a script sees of a hex view: a document whose value is the dump, line by line, and whose
// description is the byte under the caret.

namespace quillon {

class HexView;

/// Once for the process; further calls do nothing.
void installHexViewAccessibility();

/// Tells readers that bytes or caret changed.
void tellHexViewChanged(HexView& view);

}  // namespace quillon
