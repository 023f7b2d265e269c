// SPDX-License-Identifier: MIT
// The entries that say what of a job is kept as evidence.
#include <filesystem>

#include <QAction>
#include <QCheckBox>
#include <QMenu>
#include <QTest>

#include "ui/main_window.h"

using namespace quillon;

class FrmMainEvidenceTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        main_ = std::make_unique<test::MainWindow>();
        main_->open();
    }
    void cleanup() { test::closeScreens(main_); }
    void bothAreTickedUntilSomebodySaysNo();
    void aChoiceIsStoredAndLasts();
    void fileEndsAreLookedAtWhenTheBoxIsTicked();

private:
    // As it is seen when the menu opens.
    [[nodiscard]] QAction& entry(const char* name) const {
        Q_EMIT main_->control<QMenu>("mnuEvidence").aboutToShow();
        return main_->control<QAction>(name);
    }

    std::unique_ptr<test::MainWindow> main_;
};

void FrmMainEvidenceTest::bothAreTickedUntilSomebodySaysNo() {
    QCOMPARE(entry("evidenceKeep").text(), QStringLiteral("&Keep evidence of jobs"));
    QCOMPARE(entry("evidenceHeads").text(), QStringLiteral("Keep the first &bytes of files in it"));
    QVERIFY(entry("evidenceKeep").isChecked());
    QVERIFY(entry("evidenceHeads").isChecked());
}

void FrmMainEvidenceTest::aChoiceIsStoredAndLasts() {
    entry("evidenceHeads").trigger();
    QVERIFY(!main_->job.state.options.keepHeads);
    QVERIFY(main_->job.state.options.keepEvidence);
    entry("evidenceKeep").trigger();
    QVERIFY(!main_->job.state.options.keepEvidence);
    QCOMPARE(main_->temp.read("app/preferences.ini"), std::string("evidence.heads=no\nevidence.keep=no\n"));
    main_->window->loadSettings();
    QVERIFY(!entry("evidenceKeep").isChecked());
    QVERIFY(!entry("evidenceHeads").isChecked());
}

void FrmMainEvidenceTest::fileEndsAreLookedAtWhenTheBoxIsTicked() {
    auto& box = main_->control<QCheckBox>("chkEnds");
    QCOMPARE(box.text(), QStringLiteral("Look at file ends too"));
    QVERIFY(!box.isChecked());
    QVERIFY(box.isEnabled());
    box.click();
    QVERIFY(main_->job.state.options.lookAtEnds);
    QCOMPARE(main_->temp.read("app/preferences.ini"), std::string("evidence.ends=yes\n"));
    main_->window->loadSettings();
    QVERIFY(box.isChecked());
    entry("evidenceKeep").trigger();
    QVERIFY2(!box.isEnabled(), "what they show has no place");
}

QTEST_MAIN(FrmMainEvidenceTest)
#include "frmMain_evidence_test.moc"
