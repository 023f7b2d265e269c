// SPDX-License-Identifier: MIT
#pragma once

// What a screen is given when it is made: references to objects that live in main, longer than every screen.

#include <functional>
#include <string>

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/surroundings.h"

namespace quillon {

class AlertPorts;
class Navigator;
class WindowEventLoop;

struct ScreenContext {
    Installation& installation;
    const Surroundings& surroundings;
    KeptFiles& kept;
    Navigator& navigator;
    WindowEventLoop& loop;
    AlertPorts* alertPorts = nullptr;  ///< of the exchanges of all screens; null for screens that stand alone
    std::function<void(const std::string& text)> warnInLog =
        {};  ///< an orange row of the job log; empty: there is none
};

}  // namespace quillon
