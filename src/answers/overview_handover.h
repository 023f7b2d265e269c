// SPDX-License-Identifier: MIT
#pragma once

// What the overview is given by the screen that opens it, and what it gives the viewer.

#include <functional>
#include <string>

#include "testing/grade.h"

namespace quillon {

struct OverviewHandover {
    std::string job;             ///< ID, or path of a list or an evidence file
    std::function<void()> back;  ///< shows the screen that was left; empty: the main window is shown
};

/// The files that the viewer begins with.
struct ViewerHandover {
    Grade grade = Grade::Corrupt;
    std::string extension;  ///< lower case, UTF-8; empty for all
};

}  // namespace quillon
