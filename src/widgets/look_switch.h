// SPDX-License-Identifier: MIT
#pragma once

// Which look a person has chosen for the program: light, dark, or that of the desktop.

#include <array>
#include <string_view>

#include "app/preferences.h"
#include "widgets/theme.h"

class QApplication;

namespace quillon {

enum class LookChoice { Desktop, Light, Dark };

/// A choice as it stands in the preferences.
struct LookRow {
    LookChoice choice;
    std::string_view stored;
};
inline constexpr std::array<LookRow, 3> kLooks{
    {{LookChoice::Desktop, "desktop"}, {LookChoice::Light, "light"}, {LookChoice::Dark, "dark"}}};
inline constexpr Preference<std::string> kLookPreference{"window.look"};

class LookSwitch {
public:
    /// Gives the program the look that was chosen in the installation of this folder; without a choice, the desktop's.
    /// Made behind the application and ahead of everything that it shows. The application must outlive this.
    LookSwitch(QApplication& application, NativePath appFolder);

    [[nodiscard]] LookChoice choice() const { return choice_; }
    /// Changes the look of all windows at once. On failure the choice could not be stored and lasts as long as the
    /// program.
    [[nodiscard]] Result<void> choose(LookChoice choice);

private:
    void apply();

    QApplication& application_;
    NativePath appFolder_;
    Look desktop_;
    LookChoice choice_ = LookChoice::Desktop;
};

}  // namespace quillon
