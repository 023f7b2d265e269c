// SPDX-License-Identifier: MIT
#pragma once

// What the core takes from the computer it runs on, gathered so that a test can fix all of it: the clock, the form of
// dates, the name of the computer, the person in front of it and the event loop.

#include <string>

#include "app/dialogs.h"
#include "app/event_loop.h"
#include "platform/dates.h"

namespace quillon {

/// References to objects that live in main, longer than everything that holds this.
struct Surroundings {
    const Clock& clock;
    const DateTexts& dates;
    Dialogs& dialogs;
    EventLoop& loop;
    std::string hostName;  ///< UTF-8, blanks cut on the right
};

}  // namespace quillon
