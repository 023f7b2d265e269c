// SPDX-License-Identifier: MIT
#pragma once

class QApplication;
class QLineEdit;
class QPushButton;

namespace quillon {

/// Enter presses the button that has the keyboard, in every window of the program. Qt gives only dialogs that key;
/// elsewhere a button hears the space bar alone.
void installEnterKey(QApplication& application);

/// Enter in a box presses the button. In an empty box it does nothing: what a button makes of an empty entry is not to
/// happen by a key that was meant for another window.
void enterPresses(QLineEdit& box, QPushButton& button);

}  // namespace quillon
