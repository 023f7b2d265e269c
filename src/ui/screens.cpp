// SPDX-License-Identifier: MIT
// One line for each screen: which class it is and what it is made from.
#include "ui/frmABout.h"
#include "ui/help_window.h"
#include "ui/navigator.h"
#include "ui/screen_context.h"

namespace quillon {

void registerScreens(const ScreenContext& context) {
    Navigator& screens = context.navigator;
    screens.add(Screen::About, [](const std::any&) { return std::make_unique<frmABout>(); });
    screens.add(Screen::Help, [&context](const std::any&) {
        return std::make_unique<HelpWindow>(context.installation.appFolder() / kHelpFileName);
    });
}

}  // namespace quillon
