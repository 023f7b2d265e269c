// SPDX-License-Identifier: MIT
#pragma once

// A screen of the editors as a person has it: opened through the navigator, over an installation in a temporary folder,
// with scripted dialogs and a main window that only counts how often it was asked to show itself.

#include <memory>
#include <string>
#include <vector>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>

#include "editors/editor_folders.h"
#include "job/job.h"
#include "support/screen_control.h"
#include "ui/screens.h"
#include "widgets/grid.h"
#include "widgets/navigator.h"
#include "widgets/qt_text.h"
#include "widgets/screen_context.h"
#include "widgets/window_event_loop.h"

namespace quillon::test {

class EditorScreen : public EditorFolders, private MainWindowDoor {
public:
    explicit EditorScreen(Screen screen) : screen_(screen) {
        dialogs.onProblem = [this](const std::string& problem) { problems << toQt(problem); };
        registerScreens(context, job);
        navigator.setMain(this);
    }

    // The dialogs outlive the list of problems.
    ~EditorScreen() override {
        dialogs.onProblem = [](const std::string&) {};
    }

    /// Opens the screen without waiting for it.
    void open() { navigator.open(screen_); }
    [[nodiscard]] bool isOpen() const {
        const QWidget* found = navigator.window(screen_);
        return found != nullptr && found->isVisible();
    }
    /// The window of the screen; the test fails without one.
    [[nodiscard]] QWidget& window() const { return windowOf(screen_); }
    [[nodiscard]] QWidget& windowOf(Screen screen) const {
        QWidget* found = navigator.window(screen);
        if (found == nullptr)
            qFatal("the screen is not open");
        return *found;
    }
    /// The control or menu entry of this object name.
    template <typename Control>
    Control& control(const char* name) const {
        return controlOf<Control>(window(), name);
    }
    void click(const char* button) const { control<QPushButton>(button).click(); }
    void type(const char* box, const char* text) const { control<QLineEdit>(box).setText(QString::fromUtf8(text)); }
    [[nodiscard]] QString text(const char* box) const { return control<QLineEdit>(box).text(); }
    /// Without the mark of its key.
    [[nodiscard]] QString caption(const char* button) const { return captionOf(control<QPushButton>(button)); }
    [[nodiscard]] Grid& grid() const { return control<Grid>("iGrid1"); }

    /// The rows of the grid, cells joined by "|".
    [[nodiscard]] QStringList rows() const {
        QStringList all;
        for (int row = 0; row < grid().rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < grid().columnCount(); ++column) cells << toQt(grid().cell(row, column));
            all << cells.join(QLatin1Char('|'));
        }
        return all;
    }

    /// A click of a mouse button on a row of the grid.
    void clickRow(int row, Qt::MouseButton button = Qt::LeftButton) const {
        const QPoint place = grid().visualRect(grid().model()->index(row, 0)).center();
        QTest::mouseClick(grid().viewport(), button, Qt::NoModifier, place);
        if (button == Qt::RightButton) {
            QContextMenuEvent menu(QContextMenuEvent::Mouse, place, grid().viewport()->mapToGlobal(place));
            QApplication::sendEvent(grid().viewport(), &menu);
        }
    }

    /// A shortcut of a window, which hears keys only while it is the active one.
    static void pressIn(QWidget& window, Qt::Key key) {
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(&window, key);
    }

    QStringList problems;
    Job job{installation, fake.surroundings};
    WindowEventLoop loop{fake.clock};
    Navigator navigator;
    ScreenContext context{installation, fake.surroundings, kept, navigator, loop};
    int mainShown = 0;

private:
    void reloadForm() override {}
    void loadSettings() override {}
    void upDateAllLabels() override {}
    void showMain() override { ++mainShown; }

    Screen screen_;
};

}  // namespace quillon::test
