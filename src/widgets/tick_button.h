// SPDX-License-Identifier: MIT
#pragma once

// A button with a menu of ticks, for a choice of several in the room of one. The menu stays open while ticks are set,
// by mouse and by keyboard.

#include <string>
#include <vector>

#include <QPushButton>

class QMenu;

namespace quillon {

class TickButton final : public QPushButton {
    Q_OBJECT

public:
    /// Texts are UTF-8. The entries of its menu are called `name`_1 and so on. All are ticked at first.
    TickButton(const char* name, const std::vector<std::string>& captions);

    /// An entry ahead of the ticks that sets them all: one value for each.
    void addPreset(const char* name, const char* caption, std::vector<bool> ticks);

    /// The button's own text, "&" marks its key.
    void setCaption(const std::string& caption);
    /// One value for each entry. Tells nobody.
    void setTicks(const std::vector<bool>& ticks);
    [[nodiscard]] std::vector<bool> ticks() const;

signals:
    /// A person has changed the ticks. One always stays.
    void changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void take(QAction& entry);

    QMenu* menu_;
    std::vector<QAction*> entries_;
    QAction* firstPreset_ = nullptr;
};

}  // namespace quillon
