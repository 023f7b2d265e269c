// SPDX-License-Identifier: MIT
#pragma once

// The common look: palette, spacing, fonts and icons, light and dark.

#include <QFont>
#include <QIcon>
#include <QString>

#include "widgets/theme_colours.h"

class QApplication;
class QLabel;
class QPushButton;
class QWidget;

namespace quillon {

/// The look that the desktop's own colours ask for. Asked before `applyLook`.
[[nodiscard]] Look lookOfDesktop();

/// Style, palette and style sheet of the whole program; also gives the program its icon.
void applyLook(QApplication& application, Look look);

/// Distances of all layouts, in pixels of a screen with 96 points per inch.
inline constexpr int kSpacing = 8;
inline constexpr int kMargin = 12;

/// An icon of src/widgets/icons by its name, in the colour of the text, with a quiet form for switched-off controls. It
/// follows a change of the look. Empty for a name that there is not.
[[nodiscard]] QIcon icon(const QString& name);

/// The button that a person most likely wants next on a screen.
void makePrimary(QPushButton& button);
/// A remark: smaller and quieter than the labels around it.
void makeRemark(QLabel& label);
/// The colour of a word on a job: "running", "done", "trouble", or "" for that of all labels.
void setTone(QLabel& label, const char* tone);
/// A label for text from outside: plain text, can be selected with the mouse, may be cut off with "..." by its width.
void makePlain(QLabel& label);
/// Digits of one width, so that running counts do not jump.
[[nodiscard]] QFont countFont(const QFont& base);

}  // namespace quillon
