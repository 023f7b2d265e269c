// SPDX-License-Identifier: MIT
// A plugin that the window program loads by Qt's own means (QT_QPA_GENERIC_PLUGINS), so that a test sees the real
// program start without a word about tests in it: prints the object name of each window as it comes up, and leaves
// the way a person would: "Exit" of the main window, Yes in a box, "Go on locally" where a share hangs, the close
// button of everything else.

#include <cstdio>

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QMessageBox>
#include <QPushButton>
#include <QWidget>

namespace {

class StartProbe final : public QObject {
public:
    StartProbe() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* window = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::Show && window != nullptr && window->isWindow())
            QMetaObject::invokeMethod(
                window, [window] { leave(*window); }, Qt::QueuedConnection);
        return QObject::eventFilter(watched, event);
    }

private:
    static void leave(QWidget& window) {
        std::puts(qPrintable(window.objectName()));
        std::fflush(stdout);
        if (auto* box = qobject_cast<QMessageBox*>(&window))
            box->done(QMessageBox::Yes);
        else if (auto* exit = window.findChild<QAction*>(QStringLiteral("mnuExit")))
            exit->trigger();
        else if (auto* local = window.findChild<QPushButton*>(QStringLiteral("goOnLocally")))
            local->click();
        else
            window.close();
    }
};

}  // namespace

class StartProbePlugin final : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "start_probe.json")

public:
    QObject* create(const QString& /*name*/, const QString& /*options*/) override { return new StartProbe; }
};

#include "start_probe.moc"
