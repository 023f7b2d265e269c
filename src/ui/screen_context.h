// SPDX-License-Identifier: MIT
#pragma once

// What a screen is given when it is made: references to objects that live in main, longer than every screen.

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/surroundings.h"

namespace quillon {

class Job;
class Navigator;
class WindowEventLoop;

struct ScreenContext {
    Installation& installation;
    const Surroundings& surroundings;
    KeptFiles& kept;
    Job& job;  ///< state, loaded lists and report messages; include "job/job.h"
    Navigator& navigator;
    WindowEventLoop& loop;
};

/// Tells the navigator which class each screen is. The context must outlive the navigator's use.
void registerScreens(const ScreenContext& context);

}  // namespace quillon
