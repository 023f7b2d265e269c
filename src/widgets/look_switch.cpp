// SPDX-License-Identifier: MIT
#include "widgets/look_switch.h"

#include <utility>

#include <QApplication>

namespace quillon {

LookSwitch::LookSwitch(QApplication& application, NativePath appFolder)
    : application_(application), appFolder_(std::move(appFolder)), desktop_(lookOfDesktop()) {
    const auto stored = readPreferences(appFolder_).value_or(Preferences()).get(kLookPreference);
    for (const LookRow& row : kLooks)
        if (stored == row.stored)
            choice_ = row.choice;
    apply();
}

Result<void> LookSwitch::choose(LookChoice choice) {
    choice_ = choice;
    apply();
    return changePreferences(appFolder_, [choice](Preferences& preferences) {
        preferences.set(kLookPreference, kLooks[static_cast<std::size_t>(choice)].stored);
    });
}

void LookSwitch::apply() {
    if (choice_ == LookChoice::Desktop)
        applyLook(application_, desktop_);
    else
        applyLook(application_, choice_ == LookChoice::Dark ? Look::Dark : Look::Light);
}

}  // namespace quillon
