// SPDX-License-Identifier: MIT
// A modal screen is waited for by its hiding: closing and hiding are the same to the opener, and a screen may be any
// kind of window.
#include "widgets/navigator.h"

#include <algorithm>

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QWindow>

#include "widgets/window_place.h"
#include "widgets/window_sizes.h"

namespace quillon {
namespace {

// Ends a loop when the watched window is hidden by the program or the person; minimising is neither.
class HideWatch final : public QObject {
public:
    HideWatch(QWidget& window, QEventLoop& loop) : loop_(loop) {
        window.installEventFilter(this);
        connect(&window, &QObject::destroyed, &loop_, &QEventLoop::quit);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Hide && !event->spontaneous())
            loop_.quit();
        return QObject::eventFilter(watched, event);
    }

private:
    QEventLoop& loop_;
};

// Keeps a screen above the window that opened it without making it that window's child.
void standAbove(QWidget& window) {
    QWidget* opener = QApplication::activeWindow();
    if (opener == nullptr || opener == &window)
        return;
    window.winId();
    if (window.windowHandle() != nullptr)
        window.windowHandle()->setTransientParent(opener->windowHandle());
}

}  // namespace

Navigator::~Navigator() {
    while (!loaded_.empty()) {
        const QPointer<QWidget> window = loaded_.back().window;
        loaded_.pop_back();
        delete window.data();
    }
    // No event loop turns for these any more, and what they refer to may go right behind this.
    for (const auto& window : leaving_) delete window.data();
}

QWidget* Navigator::window(Screen screen) const {
    const auto found =
        std::find_if(loaded_.begin(), loaded_.end(), [screen](const Loaded& one) { return one.screen == screen; });
    return found == loaded_.end() ? nullptr : found->window.data();
}

QWidget* Navigator::load(Screen screen, const std::any& handOver) {
    if (QWidget* existing = window(screen))
        return existing;
    const auto factory = factories_.find(screen);
    if (factory == factories_.end())
        return nullptr;
    std::erase_if(loaded_, [](const Loaded& one) { return one.window.isNull(); });
    QWidget* made = factory->second(handOver).release();
    prepareWindow(*made);
    placeOver(*made, QApplication::activeWindow());
    loaded_.push_back({screen, made});
    return made;
}

void Navigator::prepareWindow(QWidget& window) {
    if (sizes_ != nullptr)
        sizes_->restore(window);
    fitOnScreen(window, QApplication::activeWindow());
    if (sizes_ != nullptr)
        sizes_->opens(window);
}

void Navigator::leaveWindow(const QWidget& window) {
    if (sizes_ != nullptr)
        sizes_->leave(window);
}

void Navigator::open(Screen screen, const std::any& handOver) {
    QWidget* shown = load(screen, handOver);
    if (shown == nullptr)
        return;
    // A modal screen blocks every window that does not stand above it, so its help would be a dead picture.
    const QWidget* modal = QApplication::activeModalWidget();
    if (modal != nullptr && modal != shown) {
        shown->hide();
        standAbove(*shown);
    }
    shown->show();
    shown->raise();
    shown->activateWindow();
}

void Navigator::openModal(Screen screen, const std::any& handOver) {
    QWidget* shown = load(screen, handOver);
    if (shown == nullptr)
        return;
    shown->setWindowModality(Qt::ApplicationModal);
    standAbove(*shown);
    QEventLoop loop;
    HideWatch watch(*shown, loop);
    shown->show();
    if (shown->isVisible())
        loop.exec(QEventLoop::DialogExec);
    unload(screen);
}

void Navigator::hide(Screen screen) {
    if (QWidget* shown = window(screen))
        hideInPlace(*shown);
}

void Navigator::unload(Screen screen) {
    QWidget* gone = window(screen);
    std::erase_if(loaded_, [screen](const Loaded& one) { return one.screen == screen; });
    if (gone == nullptr)
        return;
    leaveWindow(*gone);
    gone->hide();
    std::erase_if(leaving_, [](const QPointer<QWidget>& window) { return window.isNull(); });
    leaving_.emplace_back(gone);
    gone->deleteLater();
}

void Navigator::unloadAll() {
    while (!loaded_.empty()) unload(loaded_.back().screen);
}

}  // namespace quillon
