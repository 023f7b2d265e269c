// SPDX-License-Identifier: MIT
// How lively a window stays while it waits for an acknowledgement that never comes, and when the wait ends: "Test" is
// pressed in the real main window or zip screen, on real sockets and with the system's own look-up of names.
//
//   quillon_bench_alert_wait main|zip RECIPIENT
//
// Prints how long it took from the press to the box that tells the failure, the longest gap between two beats of a
// timer of 20 ms meanwhile, and the processor time.
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include "archive/frmZip.h"
#include "job/job.h"
#include "platform/host.h"
#include "support/temp_folder.h"
#include "ui/frmMain.h"
#include "widgets/navigator.h"
#include "widgets/screen_context.h"
#include "widgets/window_event_loop.h"

namespace quillon {
namespace {

constexpr int kBeat = 20;
constexpr int kWarmUp = 500;

// Beats until told to stop.
class Heart {
public:
    void start() {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, [this] { beat(); });
        sinceBeat_.start();
        timer_.start(kBeat);
    }
    void stop() {
        timer_.stop();
        beat();
    }
    int beats = 0;
    double longestGap = 0;  ///< milliseconds

private:
    void beat() {
        longestGap = std::max(longestGap, static_cast<double>(sinceBeat_.nsecsElapsed()) / 1e6);
        sinceBeat_.start();
        ++beats;
    }
    QTimer timer_;
    QElapsedTimer sinceBeat_;
};

// The press and what ends it.
struct Measure {
    QElapsedTimer time;
    std::clock_t processor = 0;
    Heart heart;

    void begin() {
        processor = std::clock();
        time.start();
        heart.start();
    }
    void end(const std::string& title) {
        const double seconds = static_cast<double>(time.nsecsElapsed()) / 1e9;
        heart.stop();
        const double busy = static_cast<double>(std::clock() - processor) / CLOCKS_PER_SEC;
        std::printf("%s after %.3f s, %d beats, longest gap %.1f ms, %.2f s of processor time\n", title.c_str(),
                    seconds, heart.beats, heart.longestGap, busy);
    }
};

// The first box ends the measuring; every question is answered with No.
class MeasuringDialogs final : public Dialogs {
public:
    explicit MeasuringDialogs(Measure& measure) : measure_(measure) {}
    BoxAnswer show(const MessageBox& box) override {
        measure_.end(box.title);
        QTimer::singleShot(0, [] { QApplication::exit(); });  // without closing windows, which would ask
        return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::No;
    }
    std::optional<std::string> input(const std::string& /*title*/, const std::string& /*prompt*/,
                                     const std::string& /*initial*/) override {
        return std::nullopt;
    }
    std::optional<NativePath> pickFolder(const std::string& /*title*/, const NativePath& /*start*/) override {
        return std::nullopt;
    }
    std::vector<NativePath> pickFiles(const FilePick& /*pick*/) override { return {}; }

private:
    Measure& measure_;
};

void install(Installation& installation, const test::TempFolder& folder, const std::string& recipient) {
    std::filesystem::create_directories(folder / "app");
    std::filesystem::create_directories(folder / "local/Settings");
    installation.settings.localPath.assign(pageFromPath(folder / "local"));
    installation.settings.alertRecipient.assign(toPage(recipient));
    installation.settings.zipRecipient.assign(toPage(recipient));
    installation.refreshPathVariables();
}

int measure(QApplication& application, bool zip, const std::string& recipient) {
    Measure measured;
    const test::TempFolder folder;
    const SystemClock clock;
    const DateTexts dates;
    MeasuringDialogs dialogs(measured);
    WindowEventLoop loop(clock);
    const Surroundings surroundings{clock, dates, dialogs, loop, hostName()};
    Installation installation(folder / "app");
    install(installation, folder, recipient);
    Job job(installation, surroundings);
    Navigator navigator;
    const ScreenContext context{installation, surroundings, job.kept(), navigator, loop};
    UdpSocket server;
    UdpSocket client;
    AlertExchange exchange(AlertScreen::Main, server, client, installation, surroundings,
                           [] { return std::string("1234"); });
    std::unique_ptr<QWidget> screen;
    if (zip) {
        screen = std::make_unique<frmZip>(context, ZipHandover{"1234", "-"}, nullptr);
        screen->show();
    } else {
        auto window = std::make_unique<frmMain>(context, job, MainWindowAlerts{&exchange, nullptr});
        window->reloadForm();
        screen = std::move(window);
    }
    auto* test = screen->findChild<QPushButton*>(QLatin1String(zip ? "Command8" : "Command3"));
    if (test == nullptr || !test->isEnabled()) {
        std::fputs("\"Test\" cannot be pressed\n", stderr);
        return 1;
    }
    QTimer::singleShot(kWarmUp, test, [&] {
        measured.begin();
        test->click();
    });
    return application.exec();
}

}  // namespace
}  // namespace quillon

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    const std::string screen = argc == 3 ? argv[1] : "";
    if (screen != "main" && screen != "zip") {
        std::fputs("usage: quillon_bench_alert_wait main|zip RECIPIENT\n", stderr);
        return 2;
    }
    return quillon::measure(application, screen == "zip", argv[2]);
}
