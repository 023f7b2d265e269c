// SPDX-License-Identifier: MIT
#pragma once

class QApplication;

namespace quillon {

/// Enter presses the button that has the keyboard, in every window of the program. Qt gives only dialogs that key;
/// elsewhere a button hears the space bar alone.
void installEnterKey(QApplication& application);

}  // namespace quillon
