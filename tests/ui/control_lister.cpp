// SPDX-License-Identifier: MIT
// Writes the named controls of every screen, for scripts/make_screens_page.py: one line each, fields parted by a tab.
//
//   SCREEN TITLE                     ahead of the controls of a screen
//   SCREEN NAME KIND CAPTION         in the order in which the screen made them

#include <cstdio>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QProgressBar>
#include <QRadioButton>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTimer>
#include <QToolBar>

#include "ui/main_window.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"

using namespace quillon;

namespace {

template <typename Control>
bool isA(const QObject& object) {
    return qobject_cast<const Control*>(&object) != nullptr;
}

// From the special to the general.
QString kindOf(const QObject& object) {
    if (const auto* entry = qobject_cast<const QAction*>(&object); entry != nullptr && entry->isSeparator())
        return QStringLiteral("separator");
    const std::pair<bool (*)(const QObject&), const char*> kinds[] = {
        {isA<Grid>, "grid"},
        {isA<HexView>, "hex view"},
        {isA<QTextBrowser>, "page"},
        {isA<QLabel>, "label"},
        {isA<QLineEdit>, "text box"},
        {isA<QComboBox>, "choice"},
        {isA<QListWidget>, "list"},
        {isA<QCheckBox>, "check box"},
        {isA<QRadioButton>, "option"},
        {isA<QAbstractButton>, "button"},
        {isA<QGroupBox>, "frame"},
        {isA<QProgressBar>, "progress bar"},
        {isA<QTabWidget>, "tabs"},
        {isA<QToolBar>, "toolbar"},
        {isA<QStatusBar>, "status bar"},
        {isA<QMenu>, "menu"},
        {isA<QAction>, "menu entry"},
        {isA<QTimer>, "timer"},
    };
    for (const auto& [fits, kind] : kinds) {
        if (fits(object))
            return QLatin1String(kind);
    }
    return QStringLiteral("picture");
}

QString captionOf(const QObject& object) {
    if (isA<QLineEdit>(object))
        return {};
    if (const auto* widget = qobject_cast<const QWidget*>(&object))
        return test::captionOf(*widget);
    return object.property("text").toString().remove(QLatin1Char('&'));
}

void print(const QStringList& fields) {
    std::printf("%s\n", fields.join(QLatin1Char('\t')).toUtf8().constData());
}

// The named parts of a screen, without those that Qt makes inside its own widgets and without layout.
bool isControl(const QObject& object) {
    const QString name = object.objectName();
    const bool ofQt = name.startsWith(QStringLiteral("qt_")) || name.startsWith(QLatin1Char('_'));
    return !name.isEmpty() && !ofQt && !isA<QSplitter>(object) && !isA<QTabBar>(*object.parent());
}

void listControls(const QWidget& screen) {
    print({screen.objectName(), screen.windowTitle()});
    for (const QObject* object : screen.findChildren<QObject*>()) {
        if (isControl(*object))
            print({screen.objectName(), object->objectName(), kindOf(*object), captionOf(*object).simplified()});
    }
}

void listScreens() {
    test::MainWindow main;
    main.addScreens();
    listControls(main.open());
    for (const Screen screen : {Screen::ViewList, Screen::ExtEditor, Screen::Updatedb, Screen::CommonHeaders,
                                Screen::SkipList, Screen::Errors, Screen::BadSectors, Screen::PreviewBadSector,
                                Screen::Zip, Screen::SetupWizard, Screen::SetupNetwork, Screen::About, Screen::Help}) {
        main.navigator.open(screen);
        listControls(*main.navigator.window(screen));
    }
    main.navigator.unloadAll();
}

}  // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    listScreens();
    return 0;
}
