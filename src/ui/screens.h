// SPDX-License-Identifier: MIT
#pragma once

// The list of screens: which class each one is and what it is made from.

#include "widgets/screen_context.h"

namespace quillon {

class Job;

/// Tells the navigator which class each screen is. Context and job must outlive the navigator's use.
void registerScreens(const ScreenContext& context, Job& job);

/// Before something asks the share on the screen's own thread: a share that does not answer is told after two seconds,
/// and the person may leave it out, which the job log says too.
void askShareFirst(Job& job);

/// The same for the archive folder: a person may go on with one below the local path.
void askArchiveFirst(Job& job);

}  // namespace quillon
