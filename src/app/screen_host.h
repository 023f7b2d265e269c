// SPDX-License-Identifier: MIT
#pragma once

namespace quillon {

/// What the logic of a screen asks of the screen, whichever it is.
class ScreenHost {
public:
    virtual ~ScreenHost() = default;
    /// The state has changed. Called before every box and every turn of the event loop that follows a change.
    virtual void showState() = 0;
    virtual void beep() = 0;
    /// Shows the state and gives the keyboard to the control of this name: one that is off or out of sight takes none.
    virtual void focus(const char* control) = 0;
};

}  // namespace quillon
