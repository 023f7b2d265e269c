// SPDX-License-Identifier: MIT
#include "widgets/tick_button.h"

#include <algorithm>
#include <utility>

#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>

#include "widgets/qt_text.h"

namespace quillon {

TickButton::TickButton(const char* name, const std::vector<std::string>& captions) : menu_(new QMenu(this)) {
    setObjectName(QLatin1String(name));
    setMenu(menu_);
    menu_->setToolTipsVisible(true);
    menu_->installEventFilter(this);
    for (const std::string& caption : captions) {
        QAction* const entry = menu_->addAction(toQt(caption));
        entry->setObjectName(QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(entries_.size() + 1));
        entry->setCheckable(true);
        entry->setChecked(true);
        connect(entry, &QAction::triggered, this, [this, entry] { take(*entry); });
        entries_.push_back(entry);
    }
}

void TickButton::addPreset(const char* name, const char* caption, std::vector<bool> ticks) {
    auto* const preset = new QAction(QLatin1String(caption), menu_);
    preset->setObjectName(QLatin1String(name));
    if (firstPreset_ == nullptr) {
        firstPreset_ = preset;
        menu_->insertSeparator(entries_.front());
    }
    // Ahead of the separator, which stands ahead of the first tick.
    const auto actions = menu_->actions();
    menu_->insertAction(actions[actions.indexOf(entries_.front()) - 1], preset);
    connect(preset, &QAction::triggered, this, [this, ticks = std::move(ticks)] {
        setTicks(ticks);
        emit changed();
    });
}

void TickButton::setCaption(const std::string& caption) {
    if (toQt(caption) != text())
        setText(toQt(caption));
}

void TickButton::setTicks(const std::vector<bool>& ticks) {
    for (std::size_t i = 0; i < entries_.size(); ++i) entries_[i]->setChecked(ticks[i]);
}

std::vector<bool> TickButton::ticks() const {
    std::vector<bool> ticks;
    for (const QAction* entry : entries_) ticks.push_back(entry->isChecked());
    return ticks;
}

// Nothing at all is no choice: the last tick stays.
void TickButton::take(QAction& entry) {
    if (std::ranges::none_of(entries_, [](const QAction* other) { return other->isChecked(); }))
        entry.setChecked(true);
    else
        emit changed();
}

// A menu closes behind every entry that is taken; a tick is set without that.
bool TickButton::eventFilter(QObject* watched, QEvent* event) {
    const auto isTick = [this](QAction* action) { return action != nullptr && action->isCheckable(); };
    QAction* taken = nullptr;
    if (watched == menu_ && event->type() == QEvent::MouseButtonRelease) {
        taken = menu_->actionAt(static_cast<QMouseEvent*>(event)->position().toPoint());
    } else if (watched == menu_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter)
            taken = menu_->activeAction();
    }
    if (!isTick(taken))
        return QPushButton::eventFilter(watched, event);
    taken->trigger();
    return true;
}

}  // namespace quillon
