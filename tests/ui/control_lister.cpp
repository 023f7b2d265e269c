// SPDX-License-Identifier: MIT
// Writes the named controls of every screen, for scripts/check_controls.py: one line each, fields parted by a tab.
//
//   SCREEN NAME used         what a person can do something with
//   SCREEN NAME shown

#include <cstdio>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollArea>
#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeView>

#include "ui/main_window.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"

using namespace quillon;

namespace {

template <typename Control>
bool isA(const QObject& object) {
    return qobject_cast<const Control*>(&object) != nullptr;
}

bool isUsed(const QObject& object) {
    if (const auto* entry = qobject_cast<const QAction*>(&object))
        return !entry->isSeparator();
    return isA<QAbstractButton>(object) || isA<QLineEdit>(object) || isA<QComboBox>(object) ||
           isA<QListWidget>(object) || isA<QTreeView>(object) || isA<QTabWidget>(object) || isA<Grid>(object) ||
           isA<HexView>(object);
}

// The named parts of a screen, without those that Qt makes inside its own widgets and without layout.
bool isControl(const QObject& object) {
    const QString name = object.objectName();
    const bool ofQt = name.startsWith(QStringLiteral("qt_")) || name.startsWith(QLatin1Char('_'));
    return !name.isEmpty() && !ofQt && !isA<QSplitter>(object) && !isA<QScrollArea>(object) &&
           !isA<QTabBar>(*object.parent());
}

void listControls(const QWidget& screen) {
    for (const QObject* object : screen.findChildren<QObject*>()) {
        if (isControl(*object))
            std::printf("%s\t%s\t%s\n", qPrintable(screen.objectName()), qPrintable(object->objectName()),
                        isUsed(*object) ? "used" : "shown");
    }
}

void listScreens() {
    test::MainWindow main;
    main.addScreens();
    listControls(main.open());
    for (const Screen screen :
         {Screen::ViewList, Screen::ExtEditor, Screen::Updatedb, Screen::CommonHeaders, Screen::SkipList,
          Screen::Errors, Screen::BadSectors, Screen::PreviewBadSector, Screen::Overview, Screen::Copies, Screen::Zip,
          Screen::SetupWizard, Screen::SetupNetwork, Screen::About, Screen::Help, Screen::History,
          Screen::SectorMarkers}) {
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
