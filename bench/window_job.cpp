// SPDX-License-Identifier: MIT
// Measures a job in the real main window, with "Show Progress" on and a heart that beats every 20 milliseconds. Prints
// the processor time of the job and the longest gap between two beats, both in milliseconds, and the memory that the
// program has and had at most, in KiB. Run by bench/window.sh.
//
//   quillon_bench_window APPLICATION_FOLDER SOURCE [TARGET] [--stop-after MILLISECONDS]
//
// The application folder has to be set up. With a target the job also copies. A job that is stopped tells how long it
// went on behind the button.

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <optional>

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "job/job.h"
#include "support/yes_dialogs.h"
#include "ui/frmMain.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"
#include "widgets/window_event_loop.h"

using namespace quillon;

namespace {

double processorMilliseconds() {
    return static_cast<double>(std::clock()) * 1000 / CLOCKS_PER_SEC;
}

// Beats on the window's own loop. A gap in wall time also grows when other programs hold the processor; one in
// processor time is the window's own doing.
class Heart {
public:
    Heart() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, [this] { beat(); });
        timer_.start(20);
        wall_.start();
    }

    void beat() {
        const double processor = processorMilliseconds();
        longestWall_ = std::max(longestWall_, wall_.restart());
        longestProcessor_ = std::max(longestProcessor_, processor - lastProcessor_);
        lastProcessor_ = processor;
    }

    [[nodiscard]] qint64 longestWall() const { return longestWall_; }
    [[nodiscard]] double longestProcessor() const { return longestProcessor_; }

private:
    QTimer timer_;
    QElapsedTimer wall_;
    double lastProcessor_ = processorMilliseconds();
    qint64 longestWall_ = 0;
    double longestProcessor_ = 0;
};

// "VmRSS" or "VmHWM" of this process, as the system tells it.
std::string memory(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(field + ':'))
            return line.substr(line.find_first_of("0123456789"));
    return "?";
}

void click(const frmMain& window, const char* button) {
    window.findChild<QPushButton*>(QLatin1String(button))->click();
}

// Stops the job after some time.
class Stopper {
public:
    explicit Stopper(frmMain& window, int milliseconds) {
        QTimer::singleShot(milliseconds, &window, [this, &window] {
            since_.start();
            click(window, "CommandButton4");
        });
    }
    [[nodiscard]] qint64 elapsed() const { return since_.isValid() ? since_.elapsed() : -1; }

private:
    QElapsedTimer since_;
};

void run(frmMain& window, const Job& job, int stopAfter) {
    const double shown = processorMilliseconds();
    window.findChild<QLineEdit*>(QStringLiteral("Textbox1"))->setText(QStringLiteral("bench-window"));
    window.findChild<QCheckBox*>(QStringLiteral("Check1"))->setChecked(true);
    click(window, "CommandButton1");
    if (job.state.options.target)
        window.findChild<QCheckBox*>(QStringLiteral("chkCopy"))->setChecked(true);
    const double before = processorMilliseconds();
    Heart heart;
    std::optional<Stopper> stopper;
    if (stopAfter > 0)
        stopper.emplace(window, stopAfter);
    click(window, "CommandButton3");
    heart.beat();
    if (stopper)
        std::printf("stopped-ms %lld ", static_cast<long long>(stopper->elapsed()));
    std::printf("files %d start-cpu-ms %.0f job-cpu-ms %.0f gap-ms %lld gap-cpu-ms %.0f rss-kib %s peak-kib %s\n",
                job.state.counters.files, shown, processorMilliseconds() - before,
                static_cast<long long>(heart.longestWall()), heart.longestProcessor(), memory("VmRSS").c_str(),
                memory("VmHWM").c_str());
}

// Takes the number behind an option out; 0 for none.
int take(QStringList& arguments, const QString& option) {
    const auto place = arguments.indexOf(option);
    if (place < 0 || place + 1 >= arguments.size())
        return 0;
    arguments.removeAt(place);
    return arguments.takeAt(place).toInt();
}

int measure(QApplication& application, QStringList arguments) {
    const int stopAfter = take(arguments, QStringLiteral("--stop-after"));
    applyLook(application, lookOfDesktop());
    const SystemClock clock;
    const DateTexts dates;
    test::YesDialogs dialogs(fromQtPath(arguments[2]));
    WindowEventLoop loop(clock);
    const Surroundings surroundings{clock, dates, dialogs, loop, "BENCH"};
    Installation installation(fromQtPath(arguments[1]));
    if (!installation.loadSettingsRecord())
        return 1;
    Job job(installation, surroundings);
    Navigator navigator;
    const ScreenContext context{installation, surroundings, job.kept(), navigator, loop};
    frmMain window(context, job, {});
    window.resize(1280, 800);
    window.reloadForm();
    if (arguments.size() > 3)
        job.state.options.target = fromQtPath(arguments[3]);
    run(window, job, stopAfter);
    return 0;
}

}  // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 3) {
        std::fputs("usage: quillon_bench_window APPLICATION_FOLDER SOURCE [TARGET] [--stop-after MILLISECONDS]\n",
                   stderr);
        return 2;
    }
    return measure(application, arguments);
}
