// SPDX-License-Identifier: MIT
// Measures the road from a bad grade to a better database in the real screens: the filter of a long list, scrolling and
// selecting in it, a retest of the files of one extension, and a search over them beside the bare opening and reading
// of their heads; then what "Done" recounts, and the list's archive. Prints processor seconds and the peak of the
// process's memory.
//
// Usage: quillon_bench_viewer [ROWS], 1,000,000 at first; QT_QPA_PLATFORM=offscreen where there is no display
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "app/file_list.h"
#include "job/job.h"
#include "platform/source_files.h"
#include "support/screen_control.h"
#include "support/temp_folder.h"
#include "text/list_text.h"
#include "ui/frmMain.h"
#include "ui/screens.h"
#include "widgets/grid.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"
#include "widgets/window_event_loop.h"

namespace {

using namespace quillon;
using test::controlOf;

constexpr int kTaught = 3000;
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

template <typename Work>
double measure(const char* what, Work work) {
    const double before = cpuSeconds();
    work();
    const double spent = cpuSeconds() - before;
    std::printf("%-44s %8.3f CPU s %6ld MB peak\n", what, spent, peakMegabytes());
    std::fflush(stdout);
    return spent;
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

std::string taughtFile(const test::TempFolder& temp, int number) {
    return (temp / ("source/f" + std::to_string(number) + ".qlx")).native();
}

// `rows` corrupt files, of which the taught ones are on the disk and stand evenly among the others.
bool makeList(const test::TempFolder& temp, int rows) {
    for (int i = 0; i < kTaught; ++i)
        temp.write("source/f" + std::to_string(i) + ".qlx", "QLX!" + std::string(600, 'x'));
    temp.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
    auto list = ListWriter::create(temp / "local/7.csv");
    if (!list)
        return false;
    const int step = std::max(rows / kTaught, 1);
    for (int i = 0; i < rows; ++i) {
        const std::string path = i % step == 0 && i / step < kTaught
                                     ? taughtFile(temp, i / step)
                                     : "/recovered/disk one/Documents and Settings/user/Pictures/" +
                                           std::to_string(i / 1000) + "/picture " + std::to_string(i) + ".jpg";
        if (!list->write(ListRow(toListText(path) + u",15/11/2026, 603, 32;Ab9x,Header Corrupt")))
            return false;
    }
    return list->close().has_value();
}

void configure(Installation& installation, const test::TempFolder& temp) {
    std::filesystem::create_directories(installation.appFolder());
    temp.write("local/Settings/Errors.dat",
               "Header OK\r\nHeader Corrupt\r\nNo Extension\r\nUnknown or ambiguous file type\r\nFile encrypted\r\n"
               "Access error\r\nFile too small to test (<512 bytes)\r\nFile is zero bytes\r\nInvalid File Name\r\n"
               "Appears to be of file type: \r\n");
    installation.settings.localPath.assign(pageFromPath(temp / "local"));
    installation.settings.zipPath.assign(pageFromPath(temp / "local"));
    installation.refreshPathVariables();
}

void click(const QWidget& screen, const char* button) {
    controlOf<QPushButton>(screen, button).click();
    QApplication::processEvents();
}

void filter(const QWidget& viewer, int limit) {
    controlOf<QLineEdit>(viewer, "Text1").setText(QString::number(limit));
    auto& category = controlOf<QComboBox>(viewer, "Combo1");
    category.setCurrentIndex(category.findText(QStringLiteral("Header Corrupt")));
    click(viewer, "Command2");
}

// Jumps through the grid, and lets each row that becomes current choose its extension.
void look(const QWidget& viewer, bool choose) {
    auto& grid = controlOf<Grid>(viewer, "iGrid1");
    for (int i = 0; i < kLooks; ++i) {
        const int row = static_cast<int>(i * 7919LL * 104729 % grid.rowCount());
        if (choose)
            grid.setCurrentRow(row);
        else
            grid.scrollToRow(row);
        QApplication::processEvents();
    }
    QTest::keyClick(&grid, Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(&grid, Qt::Key_Home, Qt::ControlModifier);
}

void search(Navigator& navigator, const QWidget& viewer, const test::TempFolder& temp) {
    auto& extension = controlOf<QComboBox>(viewer, "Combo2");
    extension.setCurrentIndex(extension.findText(QStringLiteral("qlx")));
    measure("opening the editor over 3,000 files", [&] { click(viewer, "Command3"); });
    QWidget* editor = navigator.window(Screen::ExtEditor);
    controlOf<QLineEdit>(*editor, "Text2").setText(QStringLiteral("1"));
    controlOf<QLineEdit>(*editor, "Text3").setText(QStringLiteral("QLX!"));
    const auto readHeads = [&] {
        SourceFiles files;
        HeaderBytes head;
        for (int i = 0; i < kTaught; ++i) passOver(files.readHead(taughtFile(temp, i), head), "only the time counts");
    };
    const auto tenTimes = [](const auto& work) {
        for (int i = 0; i < 10; ++i) work();
    };
    readHeads();
    const double bare = measure("opening and reading 3,000 heads, ten times", [&] { tenTimes(readHeads); });
    const double searches =
        measure("searching 3,000 files, ten times", [&] { tenTimes([&] { click(*editor, "Command11"); }); });
    std::printf("%-44s %8.2f\n", "search to bare reading", searches / bare);
    click(*editor, "Command5");
}

// Counts the rows by the list as it is now.
void recount(const QWidget& viewer, const QWidget& window) {
    measure("recount behind Done", [&] { click(viewer, "Command1"); });
    for (const char* label : {"lGoodFIles", "lCorruptFiles"})
        std::printf("%s %s\n", label, qPrintable(controlOf<QLabel>(window, label).text()));
}

void zip(Navigator& navigator, const QWidget& window, const test::TempFolder& temp) {
    measure("opening the zip screen", [&] { click(window, "CommandButton6"); });
    const QWidget& screen = *navigator.window(Screen::Zip);
    controlOf<QCheckBox>(screen, "Check2").setChecked(true);  // the list stays
    controlOf<QComboBox>(screen, "Combo1").setCurrentIndex(0);
    measure("archive, read back", [&] { click(screen, "Command4"); });
    std::printf("%ju bytes of list, %ju of archive\n", std::filesystem::file_size(temp / "local/7.csv"),
                std::filesystem::file_size(temp / "local/7.zip"));
}

int run(const test::TempFolder& temp, int rows) {
    if (!makeList(temp, rows))
        return EXIT_FAILURE;
    const SystemClock clock;
    const DateTexts dates("C");
    NoDialogs dialogs;
    WindowEventLoop loop(clock);
    const Surroundings surroundings{clock, dates, dialogs, loop, "LAB7"};
    Installation installation(temp / "app");
    configure(installation, temp);
    Job job(installation, surroundings);
    Navigator navigator;
    const ScreenContext context{installation, surroundings, job.kept(), navigator, loop};
    registerScreens(context, job);
    frmMain window(context, job, {});
    window.reloadForm();
    controlOf<QLineEdit>(window, "Textbox1").setText(QStringLiteral("7"));
    measure("opening the viewer", [&] { click(window, "CommandButton5"); });
    const QWidget& viewer = *navigator.window(Screen::ViewList);
    measure("filter, default limit of 3,000", [&] { filter(viewer, 3000); });
    measure("filter, all rows", [&] { filter(viewer, rows); });
    measure("1,000 jumps of the scroll bar", [&] { look(viewer, false); });
    measure("1,000 rows chosen", [&] { look(viewer, true); });
    search(navigator, viewer, temp);
    measure("retest of 3,000 files", [&] { click(viewer, "Command4"); });
    std::printf("%s\n", qPrintable(controlOf<QLabel>(viewer, "Label1").text()));
    recount(viewer, window);
    zip(navigator, window, temp);
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    applyLook(application, Look::Light);
    const test::TempFolder temp;
    return run(temp, argc > 1 ? std::atoi(argv[1]) : 1'000'000);
}
