// SPDX-License-Identifier: MIT
#pragma once

// The screen of a logic under test: it counts and notes what it is asked.

#include <functional>
#include <string>
#include <vector>

#include "app/screen_host.h"

namespace quillon::test {

class RecordingScreen final : public ScreenHost {
public:
    void showState() override {
        ++shown;
        if (onShow)
            onShow();
    }
    void beep() override { ++beeps; }
    void focus(const char* control) override { focused.emplace_back(control); }

    int shown = 0;
    int beeps = 0;
    std::vector<std::string> focused;  ///< in order
    std::function<void()> onShow;
};

}  // namespace quillon::test
