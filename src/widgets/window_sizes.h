// SPDX-License-Identifier: MIT
#pragma once

// How large each window was when it was left, kept in the preferences of the installation. Only what a person has
// changed is kept, so that all other windows go on to open as they were designed.

#include <map>

#include <QSize>
#include <QString>

#include "app/preferences.h"

class QWidget;

namespace quillon {

class WindowSizes {
public:
    explicit WindowSizes(NativePath appFolder) : appFolder_(std::move(appFolder)) {}

    /// Gives a window that is not shown yet the size, or the fullness, in which it was left the last time.
    void restore(QWidget& window);
    /// What this window is to be compared with when it is left: its size as it opens.
    void opens(const QWidget& window);
    /// The window is left. A size that cannot be stored is forgotten.
    void leave(const QWidget& window);

private:
    NativePath appFolder_;
    std::map<QString, QSize> opened_;
};

}  // namespace quillon
