// SPDX-License-Identifier: MIT
#pragma once

// The real "Setup Wizard" behind the real main window, which is not shown before the wizard leads there.

#include <memory>

#include <QTabWidget>

#include "archive/zip_bytes.h"
#include "support/screen_control.h"
#include "ui/main_window.h"
#include "ui/screens.h"

namespace quillon::test {

class WizardWindow : public MainWindow {
public:
    WizardWindow() {
        window = std::make_unique<frmMain>(context, job, MainWindowAlerts{});
        registerScreens(context, job);
    }
    ~WizardWindow() { navigator.unloadAll(); }

    [[nodiscard]] QWidget& screen() const { return *navigator.window(Screen::SetupWizard); }
    void click(const char* button) const { controlOf<QPushButton>(screen(), button).click(); }
    void tick(const char* box) const { controlOf<QCheckBox>(screen(), box).setChecked(true); }
    [[nodiscard]] QTabWidget& tabs() const { return controlOf<QTabWidget>(screen(), "SftTabs1"); }
    [[nodiscard]] QString label(const char* name) const { return controlOf<QLabel>(screen(), name).text(); }
    [[nodiscard]] QString box(const char* name) const { return controlOf<QLineEdit>(screen(), name).text(); }
    [[nodiscard]] QString path(const char* name) const { return toQt((temp / name).native()); }

    void openFirstRun() {
        installation.settings = AppSettings{};
        installation.refreshPathVariables();
        navigator.open(Screen::SetupWizard);
    }
    void passMethod() const {
        controlOf<QRadioButton>(screen(), "Option1_1").click();
        click("Command1");
    }
    void browse(const char* button, const char* title, const char* name) {
        dialogs.expectFolder(title, temp / name);
        click(button);
    }
    void browseLocalPaths() {
        browse("Command2", "Select folder for local database..", "new");
        browse("Command3", "Select folder to store Archives ..", "new/zips");
    }
    void writeDefaultDatabase() const {
        writeZip(temp / "app/db.zip",
                 {{"Database/png.dat", "1,89504E47,H\r\n"}, {"Settings/SkipList.dat", "*.tmp*\r\n"}});
    }
};

}  // namespace quillon::test
