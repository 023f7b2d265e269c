// SPDX-License-Identifier: MIT
#pragma once

// Makes the controls of a screen with their given names. Every control is put into a layout by its screen, which makes
// the window its owner.

#include <type_traits>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStyledItemDelegate>

#include "widgets/elided_label.h"

namespace quillon {

/// Any control with its object name.
template <typename Control>
[[nodiscard]] Control* make(const char* name) {
    auto* control = new Control;
    control->setObjectName(QLatin1String(name));
    // The rows of an open list follow the style sheet only with this delegate.
    if constexpr (std::is_base_of_v<QComboBox, Control>)
        control->setItemDelegate(new QStyledItemDelegate(control));
    return control;
}

[[nodiscard]] QGroupBox* makeFrame(const char* name, const char* caption);
[[nodiscard]] QPushButton* makeButton(const char* name, const char* caption);
[[nodiscard]] QCheckBox* makeCheck(const char* name, const char* caption);
/// A fixed label. An "&" marks the key of its buddy.
[[nodiscard]] QLabel* makeLabel(const char* name, const char* caption);
/// A label that has room for its widest text at all times.
[[nodiscard]] QLabel* makeRoomy(const char* name, const char* widestText);
/// A count at the right edge of its column, with room for every count that there can be.
[[nodiscard]] QLabel* makeCount(const char* name, const char* widestText = "2,147,483,647");
[[nodiscard]] QProgressBar* makeProgress(const char* name, const char* accessibleName);
/// What stands beside the control keeps its place when the control is hidden.
void keepRoomWhenHidden(QWidget& control);

}  // namespace quillon
