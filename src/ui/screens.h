// SPDX-License-Identifier: MIT
#pragma once

// The list of screens: which class each one is and what it is made from.

#include "widgets/screen_context.h"

namespace quillon {

class Job;

/// Tells the navigator which class each screen is. Context and job must outlive the navigator's use.
void registerScreens(const ScreenContext& context, Job& job);

}  // namespace quillon
