// SPDX-License-Identifier: MIT
// The window program as it is started: in a copied application folder, which window comes up and that it ends cleanly.

#include <QFile>
#include <QProcess>
#include <QTest>

#include "app/installation.h"
#include "support/hanging_share.h"
#include "support/temp_folder.h"
#include "widgets/qt_text.h"

using namespace quillon;

class QuillonTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { temp_.reset(); }
    void aFirstRunOpensTheWizard();
    void settingsOpenTheMainWindow();
    void emptySettingsOpenTheMainWindow();
    void aFolderThatCannotBeMadeOpensTheWizard();
    void anUnreachableShareOpensTheWizard();
    void aHungShareIsToldAndTheWindowOpensWithoutIt();
    void aHungArchiveFolderIsToldAndTheWindowOpensWithoutIt();
    void withoutADisplayItSaysSoAndEnds();
    void helpAndVersionNeedNoDisplay();

private:
    struct Ended {
        int code = -1;  // -1: not by itself
        QString out;
        QString err;
    };
    [[nodiscard]] Ended runWithoutDisplay(const QStringList& arguments) const;
    /// The windows that came up, in order; a failure is among them.
    [[nodiscard]] QStringList start() const;
    void writeSettings(const NativePath& local, const NativePath& shared = {}) const;

    std::unique_ptr<test::TempFolder> temp_;
};

void QuillonTest::init() {
    temp_ = std::make_unique<test::TempFolder>();
    std::filesystem::create_directories(*temp_ / "app");
    std::filesystem::copy_file(QUILLON_PROGRAM, *temp_ / "app/quillon");
}

QStringList QuillonTest::start() const {
    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(QUILLON_PROBE_FOLDER));
    environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("quillon_start_probe"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), toQtPath(*temp_ / "user"));
    program.setProcessEnvironment(environment);
    program.start(toQtPath(*temp_ / "app/quillon"), QStringList());
    program.waitForFinished(60000);
    auto seen = QString::fromUtf8(program.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (program.exitStatus() != QProcess::NormalExit || program.exitCode() != 0)
        seen << QStringLiteral("ended with %1: ").arg(program.exitCode()) + program.errorString() +
                    QString::fromUtf8(program.readAllStandardError());
    return seen;
}

void QuillonTest::writeSettings(const NativePath& local, const NativePath& shared) const {
    Installation installation(*temp_ / "app");
    installation.settings.localPath.assign(pageFromPath(local));
    installation.settings.zipPath.assign(pageFromPath(*temp_ / "archives"));
    installation.settings.sharedPath.assign(pageFromPath(shared));
    installation.settings.useSharedDb = shared.empty() ? 0 : 1;
    QVERIFY(installation.saveSettingsRecord());
}

void QuillonTest::aFirstRunOpensTheWizard() {
    QCOMPARE(start().value(0), QStringLiteral("frmSetupWizard"));
    QVERIFY(!std::filesystem::exists(*temp_ / "app/settings.dat"));
}

void QuillonTest::settingsOpenTheMainWindow() {
    writeSettings(*temp_ / "local");
    QCOMPARE(start(), QStringList{QStringLiteral("frmMain")});
    QVERIFY(std::filesystem::is_directory(*temp_ / "local/Settings"));
    QVERIFY(std::filesystem::is_directory(*temp_ / "local/Database"));
    QVERIFY(std::filesystem::is_directory(*temp_ / "archives"));
}

void QuillonTest::emptySettingsOpenTheMainWindow() {
    temp_->write("app/settings.dat", "");
    QCOMPARE(start(), QStringList{QStringLiteral("frmMain")});
}

void QuillonTest::aFolderThatCannotBeMadeOpensTheWizard() {
    temp_->write("file", "");
    writeSettings(*temp_ / "file/local");
    QCOMPARE(start().value(0), QStringLiteral("frmSetupWizard"));
}

void QuillonTest::anUnreachableShareOpensTheWizard() {
    temp_->write("file", "");
    writeSettings(*temp_ / "local", *temp_ / "file/share");
    QCOMPARE(start().value(0), QStringLiteral("frmSetupWizard"));
}

void QuillonTest::aHungShareIsToldAndTheWindowOpensWithoutIt() {
    std::filesystem::create_directory(*temp_ / "share");
    const auto share = test::HangingShare::mount(*temp_ / "share");
    if (share == nullptr)
        QSKIP("no file system can be mounted here");
    writeSettings(*temp_ / "local", *temp_ / "share");
    QCOMPARE(start(), (QStringList{QStringLiteral("shareWait"), QStringLiteral("frmMain")}));
}

void QuillonTest::aHungArchiveFolderIsToldAndTheWindowOpensWithoutIt() {
    std::filesystem::create_directory(*temp_ / "archives");
    const auto share = test::HangingShare::mount(*temp_ / "archives");
    if (share == nullptr)
        QSKIP("no file system can be mounted here");
    writeSettings(*temp_ / "local");
    QCOMPARE(start(), (QStringList{QStringLiteral("shareWait"), QStringLiteral("frmMain")}));
    QVERIFY(std::filesystem::is_directory(*temp_ / "local/Archives"));
}

QuillonTest::Ended QuillonTest::runWithoutDisplay(const QStringList& arguments) const {
    QProcess program;
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY"}) environment.remove(QLatin1String(display));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), toQtPath(*temp_ / "user"));
    program.setProcessEnvironment(environment);
    program.start(toQtPath(*temp_ / "app/quillon"), arguments);
    program.waitForFinished(60000);
    return {program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1,
            QString::fromUtf8(program.readAllStandardOutput()), QString::fromUtf8(program.readAllStandardError())};
}

void QuillonTest::withoutADisplayItSaysSoAndEnds() {
    const Ended ended = runWithoutDisplay({});
    QCOMPARE(ended.code, 1);
    QVERIFY2(ended.err.contains(QStringLiteral("quillon: no window can be opened: there is no display")),
             qPrintable(ended.err));
}

void QuillonTest::helpAndVersionNeedNoDisplay() {
    for (const char* option : {"--help", "--version"}) {
        const Ended ended = runWithoutDisplay({QLatin1String(option)});
        QCOMPARE(ended.code, 0);
        QVERIFY(ended.out.contains(QStringLiteral("quillon")));
        QCOMPARE(ended.err, QString());
    }
}

QTEST_GUILESS_MAIN(QuillonTest)
#include "quillon_test.moc"
