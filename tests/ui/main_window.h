// SPDX-License-Identifier: MIT
#pragma once

// The real main window over an installation in a temporary folder, with scripted dialogs and a clock that moves a turn
// at a time, so that every turn of a pass really runs the event loop.

#include <memory>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <QWidget>

#include "job/job.h"
#include "support/fake_surroundings.h"
#include "support/list_bytes.h"
#include "support/screen_control.h"
#include "support/temp_folder.h"
#include "ui/frmMain.h"
#include "ui/screens.h"
#include "widgets/qt_text.h"
#include "widgets/window_event_loop.h"

namespace quillon::test {

/// The time of day stands still; milliseconds jump at each look, so that every turn is a refresh.
class JumpingClock final : public Clock {
public:
    LocalTime now() const override { return {2026, 11, 15, 10, 20, 30, 0, 318}; }
    std::int64_t milliseconds() const override { return tick_ += WindowEventLoop::kLongestRefresh; }

private:
    mutable std::int64_t tick_ = 1000;
};

class MainWindow {
public:
    /// Local root, lists and archives below `temp`; header test on, skip list and common headers with their files.
    MainWindow() {
        temp.write("local/Settings/SkipList.dat", "*.tmp*\r\n");
        temp.write("local/Settings/CommonHeaders.dat", "1,PK,T,archive\r\n");
        temp.write("local/Settings/Errors.dat",
                   "Header OK\r\nHeader Corrupt\r\nNo Extension\r\nUnknown or ambiguous file type\r\nFile "
                   "encrypted\r\nAccess error\r\nFile too small to test (<512 bytes)\r\nFile is zero bytes\r\nInvalid "
                   "File Name\r\nAppears to be of file type: \r\n");
        temp.write("local/Database/jpg.dat", "1,FFD8FF,H\r\n");
        std::filesystem::create_directories(temp / "app");
        std::filesystem::create_directories(temp / "archives");
        installation.settings.localPath.assign(pageFromPath(temp / "local"));
        installation.settings.zipPath.assign(pageFromPath(temp / "archives"));
        installation.settings.runHeaderTest = 1;
        installation.settings.useSkipList = 1;
        installation.settings.useCommonHeaders = 1;
        installation.refreshPathVariables();
        dialogs.onProblem = [this](const std::string& problem) { problems << toQt(problem); };
    }

    /// Makes the window and runs its start sequence.
    frmMain& open() {
        window = std::make_unique<frmMain>(context, job, alerts, look);
        window->reloadForm();
        return *window;
    }

    /// The control of this object name; never null in a test that goes on.
    template <typename Control>
    Control& control(const char* name) const {
        return controlOf<Control>(*window, name);
    }
    QString text(const char* label) const { return control<QLabel>(label).text(); }

    /// `count` healthy pictures of 600 bytes below source/.
    void makePictures(int count) const {
        for (int i = 0; i < count; ++i)
            temp.write("source/p" + std::to_string(i) + ".jpg", "\xFF\xD8\xFF" + std::string(600, 'x'));
    }

    /// All screens of the program can be opened.
    void addScreens() { registerScreens(context, job); }

    /// Types a job ID and chooses source/ by the button.
    void chooseSource(const char* jobId) {
        control<QLineEdit>("Textbox1").setText(QLatin1String(jobId));
        dialogs.expectFolder("Select source", temp / "source");
        control<QPushButton>("CommandButton1").click();
    }

    TempFolder temp;
    JumpingClock clock;
    DateTexts dates{"C"};
    QStringList problems;  // ahead of the dialogs, which tell of answers left over when they go
    ScriptedDialogs dialogs;
    WindowEventLoop loop{clock};
    Surroundings surroundings{clock, dates, dialogs, loop, "LAB7"};
    Installation installation{temp / "app"};
    Job job{installation, surroundings};
    Navigator navigator;
    ScreenContext context{installation, surroundings, job.kept(), navigator, loop};
    MainWindowAlerts alerts;     ///< what `open` gives the window; at first nothing can be sent or found
    LookSwitch* look = nullptr;  ///< what `open` gives the window
    std::unique_ptr<frmMain> window;
};

}  // namespace quillon::test
