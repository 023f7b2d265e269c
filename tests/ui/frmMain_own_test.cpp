// SPDX-License-Identifier: MIT
// The switches of our own: they stand below the told ones, last, and come to the job.
#include <filesystem>

#include <QAction>
#include <QCheckBox>
#include <QGroupBox>
#include <QMenu>
#include <QTest>

#include "ui/main_window.h"
#include "widgets/tick_button.h"

using namespace quillon;

class FrmMainOwnTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        main_ = std::make_unique<test::MainWindow>();
        main_->open();
    }
    void cleanup() { test::closeScreens(main_); }
    void nothingIsChosenAtFirst();
    void choicesForCopiesNeedACopyAndNoJob();
    void aTickComesToTheJobAndLasts();
    void gradesAreTickedInAMenuThatStaysOpen();
    void theLastGradeStaysTicked();
    void eachGradeHasItsEntry();
    void onlyTheChosenGradesAreCopied();
    void everyKeyOfTheWindowIsItsOwn();

private:
    [[nodiscard]] QCheckBox& box(const char* name) const { return main_->control<QCheckBox>(name); }
    [[nodiscard]] TickButton& grades() const { return main_->control<TickButton>("copyGrades"); }
    [[nodiscard]] std::string preferences() const { return main_->temp.read("app/preferences.ini"); }

    std::unique_ptr<test::MainWindow> main_;
};

void FrmMainOwnTest::nothingIsChosenAtFirst() {
    QCOMPARE(main_->control<QGroupBox>("ownOptions").title(), QStringLiteral("More Options"));
    QCOMPARE(test::captionOf(box("chkVerifyCopies")), QStringLiteral("Verify copies"));
    QCOMPARE(test::captionOf(box("chkSalvage")), QStringLiteral("Salvage unreadable parts"));
    for (const char* name : {"chkVerifyCopies", "chkSalvage"}) QVERIFY(!box(name).isChecked());
    QCOMPARE(test::captionOf(grades()), QStringLiteral("Copy grades: all"));
    const JobOptions& options = main_->job.state.options;
    QVERIFY(!options.copyCare.verify && !options.copyCare.salvage && options.copyGrades.empty());
}

void FrmMainOwnTest::choicesForCopiesNeedACopyAndNoJob() {
    const auto areEnabled = [this] {
        const bool enabled = grades().isEnabled();
        for (const char* name : {"chkVerifyCopies", "chkSalvage"})
            if (box(name).isEnabled() != enabled)
                return -1;
        return enabled ? 1 : 0;
    };
    QCOMPARE(areEnabled(), 0);
    box("chkCopy").setChecked(true);
    QCOMPARE(areEnabled(), 1);
    main_->job.state.phase = JobPhase::Copying;
    main_->window->showState();
    QCOMPARE(areEnabled(), 0);
    main_->job.state.phase = JobPhase::Idle;
    main_->window->showState();
    QCOMPARE(areEnabled(), 1);
    box("chkCopy").setChecked(false);
    QCOMPARE(areEnabled(), 0);
}

void FrmMainOwnTest::aTickComesToTheJobAndLasts() {
    box("chkCopy").setChecked(true);
    box("chkVerifyCopies").click();
    box("chkSalvage").click();
    QVERIFY(main_->job.state.options.copyCare.verify);
    QVERIFY(main_->job.state.options.copyCare.salvage);
    main_->control<QAction>("copyGradesGood").trigger();
    QCOMPARE(preferences(), std::string("copy.verify=yes\ncopy.salvage=yes\ncopy.grades=good,common-header\n"));
    main_->job.state.options = {};
    main_->window->loadSettings();
    QVERIFY(box("chkVerifyCopies").isChecked() && box("chkSalvage").isChecked());
    QCOMPARE(test::captionOf(grades()), QStringLiteral("Copy grades: 2 of 10"));
    main_->control<QAction>("copyGradesAll").trigger();
    QVERIFY(main_->job.state.options.copyGrades.empty());
}

void FrmMainOwnTest::gradesAreTickedInAMenuThatStaysOpen() {
    box("chkCopy").setChecked(true);
    QMenu& menu = *grades().menu();
    menu.popup({});
    auto& corrupt = main_->control<QAction>("copyGrades_3");
    QCOMPARE(corrupt.text(), QStringLiteral("Corrupt"));
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&corrupt).center());
    QVERIFY(menu.isVisible());
    QVERIFY(!corrupt.isChecked());
    auto& unknown = main_->control<QAction>("copyGrades_4");
    menu.setActiveAction(&unknown);
    QTest::keyClick(&menu, Qt::Key_Space);
    QVERIFY(menu.isVisible());
    QVERIFY(!unknown.isChecked());
    QCOMPARE(test::captionOf(grades()), QStringLiteral("Copy grades: 8 of 10"));
    QTest::keyClick(&menu, Qt::Key_Escape);
    QVERIFY(!menu.isVisible());
}

void FrmMainOwnTest::theLastGradeStaysTicked() {
    main_->job.state.options.copyGrades = {Grade::Good};
    main_->window->showState();
    main_->control<QAction>("copyGrades_1").trigger();
    QVERIFY(main_->control<QAction>("copyGrades_1").isChecked());
    QCOMPARE(main_->job.state.options.copyGrades, std::vector<Grade>{Grade::Good});
}

void FrmMainOwnTest::eachGradeHasItsEntry() {
    const std::pair<const char*, const char*> entries[] = {
        {"copyGrades_1", "Good"},         {"copyGrades_2", "Common header"},     {"copyGrades_3", "Corrupt"},
        {"copyGrades_4", "Unknown"},      {"copyGrades_5", "No extension"},      {"copyGrades_6", "Encrypted"},
        {"copyGrades_7", "Access error"}, {"copyGrades_8", "Invalid file name"}, {"copyGrades_9", "Zero bytes"},
        {"copyGrades_10", "Small file"}};
    for (const auto& [name, caption] : entries) QCOMPARE(main_->control<QAction>(name).text(), QLatin1String(caption));
}

void FrmMainOwnTest::onlyTheChosenGradesAreCopied() {
    main_->makePictures(2);
    main_->temp.write("source/bad.jpg", std::string(600, 'x'));
    std::filesystem::create_directories(main_->temp / "target");
    main_->chooseSource("1234");
    box("chkCopy").setChecked(true);
    main_->dialogs.expectFolder("Select Target", main_->temp / "target");
    main_->control<QPushButton>("Command1").click();
    box("chkVerifyCopies").click();
    main_->control<QAction>("copyGradesGood").trigger();
    main_->control<QPushButton>("CommandButton3").click();
    QCOMPARE(main_->problems, QStringList());
    const auto copies = (main_->temp / "target").native() + (main_->temp / "source").native();
    QVERIFY(std::filesystem::exists(copies + "/p0.jpg") && std::filesystem::exists(copies + "/p1.jpg"));
    QVERIFY(!std::filesystem::exists(copies + "/bad.jpg"));
    QVERIFY(std::filesystem::exists(main_->temp / "target/1234.sha256"));
}

void FrmMainOwnTest::everyKeyOfTheWindowIsItsOwn() {
    QStringList keys;
    for (const QWidget* part : main_->window->findChildren<QWidget*>()) {
        const auto* label = qobject_cast<const QLabel*>(part);
        const bool speaks =
            qobject_cast<const QAbstractButton*>(part) != nullptr || (label != nullptr && label->buddy() != nullptr);
        const QString key = speaks ? QKeySequence::mnemonic(part->property("text").toString()).toString() : QString();
        if (!key.isEmpty())
            keys << key;
    }
    QCOMPARE(keys.removeDuplicates(), 0);
}

QTEST_MAIN(FrmMainOwnTest)
#include "frmMain_own_test.moc"
