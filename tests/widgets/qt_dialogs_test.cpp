// SPDX-License-Identifier: MIT
#include "widgets/qt_dialogs.h"

#include <algorithm>

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "support/temp_folder.h"
#include "widgets/qt_text.h"

using namespace quillon;

namespace {

// Runs `act` on the dialog of this kind as soon as one is open.
template <typename DialogType, typename Act>
void onDialog(Act act) {
    QTimer::singleShot(0, qApp, [act] {
        auto* dialog = qobject_cast<DialogType*>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        act(*dialog);
    });
}

}  // namespace

class QtDialogsTest : public QObject {
    Q_OBJECT

private slots:
    void aBoxHasTitleAndTextToTheLetterAsPlainText();
    void theAnswerIsTheButton();
    void closingAnswersNoOrCancel();
    void aBoxWithoutTitleShowsTheProgramsName();
    void detailsStandBehindAButton();
    void anInputGivesItsTextOrNothing();
    void aFolderPickerGivesTheFolder();
    void aFilePickerHasFiltersSuffixAndFolder();
    void theScreensBehindAreBroughtUpToDateFirst();
    void aWaitEndsByItself();
    void aWaitIsLeftByItsButtonOrByEscapeAndNotByTyping();
    void aWaitThatCannotBeLeftIsSatOut();
    void aWaitThatIsShortEnoughShowsNoBoxAndLeavesTheScreensAlive();
    void onEveryQuestionOfOverwritingNoIsTheDefaultButton();
};

void QtDialogsTest::aBoxHasTitleAndTextToTheLetterAsPlainText() {
    onDialog<QMessageBox>([](QMessageBox& box) {
        QCOMPARE(box.objectName(), QStringLiteral("MessageBox"));
        QCOMPARE(box.windowTitle(), QStringLiteral("Stop process?"));
        QCOMPARE(box.text(), QStringLiteral("<b>Do you</b> want  to stop?"));
        QCOMPARE(box.textFormat(), Qt::PlainText);
        QCOMPARE(box.icon(), QMessageBox::Question);
        QCOMPARE(box.windowModality(), Qt::ApplicationModal);
        box.accept();
    });
    QtDialogs dialogs;
    dialogs.show({"Stop process?", "<b>Do you</b> want  to stop?", BoxStyle::Question, BoxButtons::Ok});
}

void QtDialogsTest::theAnswerIsTheButton() {
    QtDialogs dialogs;
    const std::pair<QMessageBox::StandardButton, BoxAnswer> answers[] = {
        {QMessageBox::Yes, BoxAnswer::Yes}, {QMessageBox::No, BoxAnswer::No}, {QMessageBox::Cancel, BoxAnswer::Cancel}};
    for (const auto& [button, answer] : answers) {
        const auto wanted = button;
        onDialog<QMessageBox>([wanted](QMessageBox& box) { box.button(wanted)->click(); });
        QCOMPARE(dialogs.show({"T", "x", BoxStyle::Question, BoxButtons::YesNoCancel}), answer);
    }
}

void QtDialogsTest::closingAnswersNoOrCancel() {
    QtDialogs dialogs;
    onDialog<QMessageBox>([](QMessageBox& box) { box.close(); });
    QCOMPARE(dialogs.show({"T", "x", BoxStyle::Question, BoxButtons::YesNo}), BoxAnswer::No);
    onDialog<QMessageBox>([](QMessageBox& box) { box.close(); });
    QCOMPARE(dialogs.show({"T", "x", BoxStyle::Question, BoxButtons::YesNoCancel}), BoxAnswer::Cancel);
}

void QtDialogsTest::aBoxWithoutTitleShowsTheProgramsName() {
    onDialog<QMessageBox>([](QMessageBox& box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("Quillon"));
        box.accept();
    });
    QtDialogs().show({"", "x", BoxStyle::Plain, BoxButtons::Ok});
}

void QtDialogsTest::detailsStandBehindAButton() {
    const auto hasButton = [](const QMessageBox& box) {
        return std::ranges::any_of(box.buttons(), [&box](QAbstractButton* button) {
            return box.buttonRole(button) == QMessageBox::ActionRole && button->isVisible();
        });
    };
    onDialog<QMessageBox>([&](QMessageBox& box) {
        QCOMPARE(box.detailedText(), QStringLiteral("the port is taken"));
        QVERIFY(hasButton(box));
        box.accept();
    });
    MessageBox told{"T", "x", BoxStyle::Warning, BoxButtons::Ok};
    told.details = "the port is taken";
    QtDialogs().show(told);
    onDialog<QMessageBox>([&](QMessageBox& box) {
        QVERIFY(!hasButton(box));
        box.accept();
    });
    QtDialogs().show({"T", "x", BoxStyle::Warning, BoxButtons::Ok});
}

void QtDialogsTest::anInputGivesItsTextOrNothing() {
    QtDialogs dialogs;
    onDialog<QInputDialog>([](QInputDialog& box) {
        QCOMPARE(box.windowTitle(), QStringLiteral("File list separator"));
        QCOMPARE(box.labelText(), QStringLiteral("Enter a file list separator : "));
        QCOMPARE(box.textValue(), QStringLiteral("-"));
        box.setTextValue(QStringLiteral("+"));
        box.accept();
    });
    QCOMPARE(dialogs.input("File list separator", "Enter a file list separator : ", "-"), std::string("+"));
    onDialog<QInputDialog>([](QInputDialog& box) { box.reject(); });
    QVERIFY(!dialogs.input("T", "p", "").has_value());
}

void QtDialogsTest::aFolderPickerGivesTheFolder() {
    const test::TempFolder temp;
    temp.write("inside/file.txt", "x");
    const NativePath wanted = temp / "inside";
    onDialog<QFileDialog>([&](QFileDialog& picker) {
        QCOMPARE(picker.windowTitle(), QStringLiteral("Select source"));
        QCOMPARE(picker.fileMode(), QFileDialog::Directory);
        picker.selectFile(toQtPath(wanted));
        QMetaObject::invokeMethod(&picker, "accept");
    });
    QCOMPARE(QtDialogs().pickFolder("Select source", temp.path()), std::optional<NativePath>(wanted));
}

void QtDialogsTest::aFilePickerHasFiltersSuffixAndFolder() {
    const test::TempFolder temp;
    const NativePath wanted = temp.write("job.csv", "x");
    FilePick pick;
    pick.title = "Open existing file list";
    pick.filter = "File Lists (*.csv)|*.csv|All Files(*.*)";
    pick.startFolder = temp.path();
    pick.defaultSuffix = ".csv";
    onDialog<QFileDialog>([&](QFileDialog& picker) {
        QCOMPARE(picker.nameFilters(),
                 (QStringList{QStringLiteral("File Lists (*.csv)"), QStringLiteral("All Files (*)")}));
        QCOMPARE(picker.directory().absolutePath(), toQtPath(temp.path()));
        picker.selectFile(toQtPath(wanted));
        QMetaObject::invokeMethod(&picker, "accept");
    });
    QCOMPARE(QtDialogs().pickFiles(pick), std::vector<NativePath>{wanted});
}

void QtDialogsTest::aWaitEndsByItself() {
    bool over = false;
    std::string owner = "LAB7";
    onDialog<QDialog>([&](QDialog& box) {
        QCOMPARE(box.objectName(), QStringLiteral("patientWait"));
        QCOMPARE(box.windowTitle(), QStringLiteral("T"));
        QCOMPARE(box.windowModality(), Qt::ApplicationModal);
        auto* text = box.findChild<QLabel*>(QStringLiteral("patientWaitText"));
        QCOMPARE(text->text(), QStringLiteral("<b>LAB7"));
        QCOMPARE(text->textFormat(), Qt::PlainText);
        owner = "LAB8";
        QTRY_COMPARE(text->text(), QStringLiteral("<b>LAB8"));
        over = true;
    });
    QVERIFY(QtDialogs().waitFor({"T", [&] { return "<b>" + owner; }, "Do not wait",
                                 [&](std::chrono::milliseconds pause) {
                                     // The screen's thread stands still for nobody.
                                     return pause == std::chrono::milliseconds(0) && over;
                                 }}));
}

void QtDialogsTest::aWaitIsLeftByItsButtonOrByEscapeAndNotByTyping() {
    const PatientWait wait{"T", [] { return std::string("x"); }, "Do not wait",
                           [](std::chrono::milliseconds) { return false; }};
    onDialog<QDialog>([](QDialog& box) {
        for (const auto key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_A}) {
            QTest::keyClick(&box, key);
            QVERIFY(box.isVisible());
        }
        auto* leave = box.findChild<QPushButton*>(QStringLiteral("leaveWait"));
        QCOMPARE(leave->text(), QStringLiteral("Do not wait"));
        leave->click();
    });
    QVERIFY(!QtDialogs().waitFor(wait));
    onDialog<QDialog>([](QDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); });
    QVERIFY(!QtDialogs().waitFor(wait));
}

void QtDialogsTest::aWaitThatCannotBeLeftIsSatOut() {
    bool over = false;
    onDialog<QDialog>([&](QDialog& box) {
        QVERIFY(box.findChild<QPushButton*>(QStringLiteral("leaveWait")) == nullptr);
        QTest::keyClick(&box, Qt::Key_Escape);
        box.close();
        QVERIFY(box.isVisible());
        over = true;
    });
    QVERIFY(QtDialogs().waitFor(
        {"T", [] { return std::string("x"); }, "", [&over](std::chrono::milliseconds) { return over; }}));
}

void QtDialogsTest::aWaitThatIsShortEnoughShowsNoBoxAndLeavesTheScreensAlive() {
    bool over = false;
    QTimer::singleShot(0, [&over] { over = true; });
    const std::chrono::hours untold(1);
    QVERIFY(QtDialogs().waitFor(
        {"T", [] { return std::string("x"); }, "", [&over](std::chrono::milliseconds) { return over; }, untold}));
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void QtDialogsTest::theScreensBehindAreBroughtUpToDateFirst() {
    int refreshes = 0;
    QtDialogs dialogs([&refreshes] { ++refreshes; });
    int shown = 0;
    const auto leave = [&](QDialog& dialog) {
        ++shown;
        QCOMPARE(refreshes, shown);
        dialog.reject();
    };
    onDialog<QDialog>(leave);
    dialogs.show({"T", "x", BoxStyle::Question, BoxButtons::YesNo});
    onDialog<QDialog>(leave);
    dialogs.input("T", "p", "");
    onDialog<QDialog>(leave);
    dialogs.pickFolder("T", {});
    onDialog<QDialog>(leave);
    dialogs.pickFiles({});
    QCOMPARE(shown, 4);
}

void QtDialogsTest::onEveryQuestionOfOverwritingNoIsTheDefaultButton() {
    const std::pair<const char*, const char*> questions[] = {
        {"Overwrite File List?", "The file (/local/7.csv) already exists. Do you want to overwrite it?"},
        {"Warning !",
         "There are aleady files stored on this drive or folder. Any existing files or folders may be overwritten, do "
         "you still want to copy?"},
        {"Overwrite file", "You are about to overwrite the existing file (/local/7.csv)"},
        {"Overwrite file", "Do you want to overwrite the existing SkipList.dat file ?"},
        {"Overwrite existing skip list",
         "Importing a skip list will overwrite the existing skip list. Do you want to continue?"},
        {"Overwrite DB?", "There are files in the local database folders, do you want to replace them?"},
        {"Overwrite Existing Files?", "There are already files in this folder."},
        {"Overwrite shared DB?", "A database aready exists in the target folder."},
    };
    QtDialogs dialogs;
    for (const auto& [title, text] : questions) {
        onDialog<QMessageBox>([](QMessageBox& box) {
            QCOMPARE(box.defaultButton(), qobject_cast<QPushButton*>(box.button(QMessageBox::No)));
            QTest::keyClick(&box, Qt::Key_Return);
        });
        QCOMPARE(dialogs.show({title, text, BoxStyle::Question, BoxButtons::YesNo}), BoxAnswer::No);
    }
}

QTEST_MAIN(QtDialogsTest)
#include "qt_dialogs_test.moc"
