// SPDX-License-Identifier: MIT
#pragma once

// Opens the screens. Screens never include each other: each names the other by `Screen` and hands over a plain struct.
// Which class a screen is stands in screens.cpp alone, one line for each.

#include <any>
#include <functional>
#include <map>
#include <memory>

#include <QObject>
#include <QPointer>
#include <QWidget>

namespace quillon {

class WindowSizes;

enum class Screen {
    Main,
    About,
    Help,
    ViewList,
    Overview,
    Copies,
    ExtEditor,
    Zip,
    SetupWizard,
    SetupNetwork,
    SkipList,
    Updatedb,
    CommonHeaders,
    Errors,
    BadSectors,
    PreviewBadSector,
    History,
    SectorMarkers
};

/// What other screens ask of the main window. It outlives them.
class MainWindowDoor {
public:
    virtual ~MainWindowDoor() = default;
    /// True once the window's start sequence has run.
    [[nodiscard]] virtual bool isLoaded() const { return true; }
    /// Runs the window's start sequence again.
    virtual void reloadForm() = 0;
    /// Applies the settings to the window's controls.
    virtual void loadSettings() = 0;
    /// Recounts the score board from the list of the job.
    virtual void upDateAllLabels() = 0;
    /// Shows the window, after a screen that hid it.
    virtual void showMain() = 0;
};

class Navigator final : public QObject {
    Q_OBJECT

public:
    /// Makes a screen's window; `handOver` is what the opener gave, empty when it gave nothing.
    using Factory = std::function<std::unique_ptr<QWidget>(const std::any& handOver)>;

    Navigator() = default;
    ~Navigator() override;

    void add(Screen screen, Factory factory) { factories_[screen] = std::move(factory); }
    /// False for a screen that nobody has registered; opening it does nothing.
    [[nodiscard]] bool has(Screen screen) const { return factories_.count(screen) != 0; }

    /// Shows a screen and returns at once. A screen that is loaded already is shown as it is, and `handOver` is passed
    /// over.
    void open(Screen screen, const std::any& handOver = {});
    /// Shows a screen and waits until it is closed or hidden; then unloads it. Other windows are blocked meanwhile.
    void openModal(Screen screen, const std::any& handOver = {});
    /// Hides a screen and keeps it loaded.
    void hide(Screen screen);
    /// Hides a screen and forgets it; the next opening makes a new one. Safe from the screen's own handlers.
    void unload(Screen screen);
    /// All loaded screens from the last opened to the first.
    void unloadAll();
    /// The window of a loaded screen, null otherwise.
    [[nodiscard]] QWidget* window(Screen screen) const;

    /// Where the sizes of windows are kept; null: nowhere. It must outlive the navigator's use.
    void setSizes(WindowSizes* sizes) { sizes_ = sizes; }
    /// Gives a window that is not shown yet the size that it was left in, and makes it fit its screen. Done for every
    /// screen that is opened here.
    void prepareWindow(QWidget& window);
    /// The window is left: its size is kept.
    void leaveWindow(const QWidget& window);

    /// Null before the main window is made.
    void setMain(MainWindowDoor* main) { main_ = main; }
    [[nodiscard]] MainWindowDoor* main() const { return main_; }
    /// Shows the main window behind a screen that goes. Nothing happens before it is made.
    void showMain() const {
        if (main_ != nullptr)
            main_->showMain();
    }

private:
    struct Loaded {
        Screen screen;
        QPointer<QWidget> window;
    };
    QWidget* load(Screen screen, const std::any& handOver);

    std::map<Screen, Factory> factories_;
    std::vector<Loaded> loaded_;              // in order of opening
    std::vector<QPointer<QWidget>> leaving_;  // unloaded, and gone at the next turn of the event loop
    MainWindowDoor* main_ = nullptr;
    WindowSizes* sizes_ = nullptr;
};

}  // namespace quillon
