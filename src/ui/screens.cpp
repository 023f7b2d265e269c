// SPDX-License-Identifier: MIT
// One line for each screen: which class it is and what it is made from.
#include "editors/frmExtEditor.h"
#include "ui/frmABout.h"
#include "ui/help_window.h"
#include "ui/navigator.h"
#include "ui/screen_context.h"
#include "viewer/frmViewList.h"

namespace quillon {

void registerScreens(const ScreenContext& context) {
    Navigator& screens = context.navigator;
    screens.add(Screen::About, [](const std::any&) { return std::make_unique<frmABout>(); });
    screens.add(Screen::Help, [&context](const std::any&) {
        return std::make_unique<HelpWindow>(context.installation.appFolder() / kHelpFileName);
    });
    screens.add(Screen::ViewList, [&context](const std::any&) { return std::make_unique<frmViewList>(context); });
    screens.add(Screen::ExtEditor, [&context](const std::any& handOver) {
        const auto* given = std::any_cast<EditorHandover>(&handOver);
        return std::make_unique<frmExtEditor>(context, given != nullptr ? *given : EditorHandover{});
    });
}

}  // namespace quillon
