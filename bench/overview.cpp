// SPDX-License-Identifier: MIT
// Measures the overview of a long job in the real window: opening it until its first rows stand there and until all are
// found, choices that show other rows, jumps of the scroll bar, rows chosen with their heads, and the map walked into.
// Prints processor seconds, the longest step, and the peak of the process's memory.
//
// Usage: quillon_bench_overview EVIDENCE.sqlite; QT_QPA_PLATFORM=offscreen where there is no display
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include "answers/frmOverview_map.h"
#include "answers/overview_handover.h"
#include "job/job.h"
#include "support/screen_control.h"
#include "support/temp_folder.h"
#include "ui/frmMain.h"
#include "ui/screens.h"
#include "widgets/grid.h"
#include "widgets/theme.h"
#include "widgets/window_event_loop.h"

namespace {

using namespace quillon;
using test::controlOf;

constexpr int kLooks = 1000;

double cpuSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

long peakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::atol(line.c_str() + 6) / 1024;
    }
    return 0;
}

double longestTurn = 0;

// One turn of the loop; the longest one is what a user feels.
void turn() {
    const double before = cpuSeconds();
    QApplication::processEvents();
    longestTurn = std::max(longestTurn, cpuSeconds() - before);
}

template <typename Work>
void measure(const char* what, Work work) {
    longestTurn = 0;
    const double before = cpuSeconds();
    work();
    std::printf("%-44s %8.3f CPU s, longest turn %.3f, %5ld MB peak\n", what, cpuSeconds() - before, longestTurn,
                peakMegabytes());
    std::fflush(stdout);
}

// No person is here: every question is answered No.
class NoDialogs final : public Dialogs {
public:
    BoxAnswer show(const MessageBox& box) override {
        return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
    }
    std::optional<std::string> input(const std::string&, const std::string&, const std::string&) override { return {}; }
    std::optional<NativePath> pickFolder(const std::string&, const NativePath&) override { return {}; }
    std::vector<NativePath> pickFiles(const FilePick&) override { return {}; }
};

template <typename Done>
void turnUntil(Done done) {
    while (!done()) turn();
}

bool isFound(const QWidget& screen) {
    return controlOf<QLabel>(screen, "matching").text().endsWith(QStringLiteral(" files"));
}

void open(Navigator& navigator, const char* evidence) {
    measure("opening, to the first rows", [&] {
        navigator.open(Screen::Overview, OverviewHandover{evidence, {}});
        const QWidget& screen = *navigator.window(Screen::Overview);
        turnUntil([&] { return controlOf<Grid>(screen, "files").rowCount() > 0; });
    });
    const QWidget& screen = *navigator.window(Screen::Overview);
    measure("all rows found", [&] { turnUntil([&] { return isFound(screen); }); });
}

void choose(const QWidget& screen) {
    measure("another extension", [&] {
        controlOf<Grid>(screen, "extensions").setCurrentRow(2);
        turnUntil([&] { return isFound(screen); });
    });
    measure("a grade besides", [&] {
        controlOf<QComboBox>(screen, "fileChoice").setCurrentIndex(2);
        turnUntil([&] { return isFound(screen); });
    });
    measure("all again", [&] {
        controlOf<QPushButton>(screen, "showAll").click();
        turnUntil([&] { return isFound(screen); });
    });
}

void look(const QWidget& screen) {
    auto& files = controlOf<Grid>(screen, "files");
    const auto jump = [&](auto go) {
        for (int i = 0; i < kLooks; ++i) {
            go(static_cast<int>(i * 7919LL * 104729 % std::max(files.rowCount(), 1)));
            files.viewport()->repaint();
            turn();
        }
    };
    measure("1,000 jumps of the scroll bar", [&] { jump([&](int row) { files.scrollToRow(row); }); });
    measure("1,000 rows chosen, with their heads", [&] { jump([&](int row) { files.setCurrentRow(row); }); });
}

void walk(const QWidget& screen) {
    measure("sorted by the worst folders", [&] {
        controlOf<QTreeView>(screen, "folders").sortByColumn(3, Qt::DescendingOrder);
        turn();
    });
    auto& map = controlOf<FolderMap>(screen, "map");
    measure("the map walked into and out of, ten times", [&] {
        for (int i = 0; i < 10; ++i) {
            map.setFocus();
            QTest::keyClick(&map, Qt::Key_Return);
            turnUntil([&] { return isFound(screen); });
            QTest::keyClick(&map, Qt::Key_Backspace);
            turnUntil([&] { return isFound(screen); });
        }
    });
}

int run(const test::TempFolder& temp, const char* evidence) {
    const SystemClock clock;
    const DateTexts dates("C");
    NoDialogs dialogs;
    WindowEventLoop loop(clock);
    const Surroundings surroundings{clock, dates, dialogs, loop, "LAB7"};
    Installation installation(temp / "app");
    Job job(installation, surroundings);
    Navigator navigator;
    const ScreenContext context{installation, surroundings, job.kept(), navigator, loop};
    registerScreens(context, job);
    frmMain window(context, job, {});
    window.reloadForm();
    window.show();
    measure("the main window", turn);
    open(navigator, evidence);
    const QWidget& screen = *navigator.window(Screen::Overview);
    choose(screen);
    look(screen);
    walk(screen);
    std::printf("%s, %s\n", qPrintable(controlOf<QLabel>(screen, "quality").text()),
                qPrintable(controlOf<QLabel>(screen, "matching").text()));
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc < 2) {
        std::fputs("usage: quillon_bench_overview EVIDENCE.sqlite\n", stderr);
        return 2;
    }
    QApplication application(argc, argv);
    applyLook(application, Look::Light);
    const test::TempFolder temp;
    return run(temp, argv[1]);
}
