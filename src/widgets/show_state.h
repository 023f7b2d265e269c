// SPDX-License-Identifier: MIT
#pragma once

// Puts the state of a screen's logic into its controls, and leaves what shows it already alone.

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QStringList>

#include "widgets/grid.h"
#include "widgets/qt_text.h"

namespace quillon {

/// The same text again costs nothing.
inline void showText(QLabel& label, std::string_view utf8) {
    if (const QString text = toQt(utf8); text != label.text())
        label.setText(text);
}

/// The same text again leaves cursor and selection alone.
inline void showText(QLineEdit& box, std::string_view utf8) {
    if (const QString text = toQt(utf8); text != box.text())
        box.setText(text);
}

/// A choice whose items come and go: anything with `items`, the `index` of the chosen one and `enabled`. The same items
/// again leave an open list alone.
template <typename Choice>
void showChoice(QComboBox& box, const Choice& choice) {
    QStringList wanted;
    for (const std::string& item : choice.items) wanted.append(toQt(item));
    QStringList present;
    for (int i = 0; i < box.count(); ++i) present.append(box.itemText(i));
    if (wanted != present) {
        box.clear();
        box.addItems(wanted);
    }
    box.setCurrentIndex(choice.index);
    box.setEnabled(choice.enabled);
}

inline void showCurrentRow(Grid& grid, int row) {
    if (row != grid.currentRow())
        grid.setCurrentRow(row);
}

/// The pointer over a screen: the busy one, or the usual one.
inline void showPointer(QWidget& screen, bool busy) {
    if (busy == (screen.cursor().shape() == Qt::WaitCursor))
        return;
    if (busy)
        screen.setCursor(Qt::WaitCursor);
    else
        screen.unsetCursor();
}

/// A menu text in which an "&" of the data stays an "&".
[[nodiscard]] inline QString menuText(std::string_view utf8) {
    return toQt(utf8).replace(QLatin1Char('&'), QLatin1String("&&"));
}

}  // namespace quillon
