// SPDX-License-Identifier: MIT
// The recipient box of the main window: what it holds, the query of the network, the test of a computer, and the report
// at the end of a job, over sockets that the test drives.

#include <QComboBox>
#include <QPushButton>
#include <QTest>

#include "main_window.h"
#include "support/scripted_network.h"
#include "support/scripted_socket.h"

using namespace quillon;

class FrmMainAlertsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void theBoxBeginsWithQueryAndTheStoredRecipient_data();
    void theBoxBeginsWithQueryAndTheStoredRecipient();
    void aRecipientThatTheBoxHoldsSelectsTheSecondItem();
    void queryNetworkFillsTheBox();
    void withoutComputersTheBoxSaysSoAndIsDisabled();
    void anAnsweredTestAsksToSaveAndKeepsTheStoredRecipient();
    void aSilentComputerIsTold();
    void thisComputerIsTestedWithoutACheck();
    void theReportGoesToTheChosenComputer();
    void aReportThatNobodyAcknowledgesIsTold();
    void aReportToThisComputerIsRefused();
    void theFirstItemReceivesNoReport();

private:
    void open(std::vector<std::string> computers = {});
    /// The other computer acknowledges the first datagram that it gets.
    void answer();
    void choose(int item) { box().setCurrentIndex(item); }
    void click(const char* button) { main_->control<QPushButton>(button).click(); }
    [[nodiscard]] bool isBusy() const { return main_->window->cursor().shape() == Qt::WaitCursor; }
    [[nodiscard]] QComboBox& box() const { return main_->control<QComboBox>("Combo1"); }
    [[nodiscard]] QStringList items() const;

    std::vector<std::string> journal_;
    std::unique_ptr<test::ScriptedSocket> server_;
    std::unique_ptr<test::ScriptedSocket> client_;
    std::unique_ptr<AlertExchange> exchange_;
    std::unique_ptr<test::MainWindow> main_;
};

void FrmMainAlertsTest::init() {
    main_ = std::make_unique<test::MainWindow>();
    main_->temp.write("source/a.jpg", "\xFF\xD8\xFF" + std::string(600, 'x'));
    server_ = std::make_unique<test::ScriptedSocket>("wServer", journal_);
    client_ = std::make_unique<test::ScriptedSocket>("wClient", journal_);
    exchange_ = std::make_unique<AlertExchange>(AlertScreen::Main, *server_, *client_, main_->installation,
                                                main_->surroundings, [this] { return main_->job.state.options.jobId; });
}

void FrmMainAlertsTest::cleanup() {
    const bool done = main_->dialogs.done();
    const QStringList problems = main_->problems;
    main_->window.reset();
    exchange_.reset();
    main_.reset();
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    QVERIFY(done);
}

void FrmMainAlertsTest::open(std::vector<std::string> computers) {
    main_->alerts = {exchange_.get(), std::make_shared<test::ScriptedNetwork>(std::move(computers))};
    main_->open();
}

void FrmMainAlertsTest::answer() {
    main_->loop.addRefresh([this, answered = false]() mutable {
        if (answered || server_->sent.empty())
            return;
        answered = true;
        client_->arrive(
            "DESK2\xFF"
            "0\xFF"
            "Acknowledged");
    });
}

QStringList FrmMainAlertsTest::items() const {
    QStringList items;
    for (int i = 0; i < box().count(); ++i) items << box().itemText(i);
    return items;
}

void FrmMainAlertsTest::theBoxBeginsWithQueryAndTheStoredRecipient_data() {
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QStringList>("items");
    QTest::addColumn<int>("chosen");
    const QString query = QStringLiteral("Query");
    QTest::newRow("none") << QString() << QStringList{query} << 0;
    QTest::newRow("another computer") << QStringLiteral("DESK2") << QStringList{query, QStringLiteral("DESK2")} << 1;
    QTest::newRow("this computer") << QStringLiteral("lab7") << QStringList{query} << 0;
}

void FrmMainAlertsTest::theBoxBeginsWithQueryAndTheStoredRecipient() {
    QFETCH(QString, stored);
    main_->installation.settings.alertRecipient.assign(toPage(fromQt(stored)));
    open();
    QTEST(items(), "items");
    QTEST(box().currentIndex(), "chosen");
}

void FrmMainAlertsTest::aRecipientThatTheBoxHoldsSelectsTheSecondItem() {
    open({"DESK1", "DESK2", "DESK3"});
    click("Command2");
    main_->installation.settings.alertRecipient.assign(toPage("DESK3"));
    main_->window->loadSettings();
    QCOMPARE(box().currentText(), QStringLiteral("DESK1"));
}

void FrmMainAlertsTest::queryNetworkFillsTheBox() {
    open({"DESK2", "DESK3"});
    int looked = 0;
    main_->loop.addRefresh([&] {
        if (!isBusy())
            return;
        ++looked;
        QVERIFY(!main_->control<QPushButton>("Command2").isEnabled());
    });
    for (int query = 0; query < 2; ++query) {
        looked = 0;
        click("Command2");
        QVERIFY(looked > 0);
    }
    QCOMPARE(items(), (QStringList{QStringLiteral("Please Select"), QStringLiteral("DESK2"), QStringLiteral("DESK3")}));
    QCOMPARE(box().currentIndex(), 0);
    QVERIFY(box().isEnabled());
    QVERIFY(main_->control<QPushButton>("Command2").isEnabled());
    QVERIFY(!isBusy());
}

void FrmMainAlertsTest::withoutComputersTheBoxSaysSoAndIsDisabled() {
    open();
    click("Command2");
    QCOMPARE(items(), QStringList{QStringLiteral("No Computers Found")});
    QVERIFY(!box().isEnabled());
    QVERIFY(main_->control<QPushButton>("Command2").isEnabled());
}

void FrmMainAlertsTest::anAnsweredTestAsksToSaveAndKeepsTheStoredRecipient() {
    main_->installation.settings.alertRecipient.assign(toPage("DESK2"));
    open({"DESK8", "DESK9"});
    click("Command2");
    choose(2);
    answer();
    main_->dialogs.expectBox("Save as default?",
                             "Message sent and acknowledgement received. Do you want to save DESK9 to receive all "
                             "future messages from this computer ?",
                             BoxAnswer::Yes, BoxStyle::Question, BoxButtons::YesNo);
    click("Command3");
    const std::string moment = "15/11/2026 10:20:30\r\n";
    QCOMPARE(server_->sent,
             (std::vector<std::string>{"LAB7\xFF 1\xFF" + moment + " Test from quillon system\xFF" + moment +
                                       "Future messages can be viewed here.\xFF"
                                       "0"}));
    QCOMPARE(server_->sentTo, std::vector<std::string>{"DESK9:12021 from 12020"});
    QVERIFY(main_->control<QPushButton>("Command3").isEnabled());
    Installation saved(main_->temp / "app");
    QVERIFY(saved.loadSettingsRecord());
    QCOMPARE(toUtf8(saved.settings.alertRecipient.trimmed()), std::string("DESK2"));
}

void FrmMainAlertsTest::aSilentComputerIsTold() {
    main_->installation.settings.alertRecipient.assign(toPage("DESK2"));
    open();
    bool looked = false;
    main_->loop.addRefresh([&] {
        if (server_->sent.empty() || !isBusy())
            return;
        looked = true;
        QVERIFY(!main_->control<QPushButton>("Command3").isEnabled());
    });
    main_->dialogs.expectBox("Communication error",
                             "Unable to connect to computer DESK2\r\n"
                             "The problem is one of the following\r\n"
                             "\r\n"
                             "1 The computer is turned off.\r\n"
                             "2 The ZOV Messaging software is not installed on the remote computer.\r\n"
                             "3 The Remote computer is listening on the wrong port.\r\n"
                             "4 The Remote computer's firewall is blocking communication.\r\n"
                             "5 This computer's firewall is not allowing messages to be sent.\r\n",
                             BoxAnswer::Ok, BoxStyle::Warning);
    click("Command3");
    QVERIFY(looked);
    QVERIFY(main_->control<QPushButton>("Command3").isEnabled());
}

void FrmMainAlertsTest::thisComputerIsTestedWithoutACheck() {
    open({"LAB7", "DESK2"});
    click("Command2");
    choose(1);
    answer();
    main_->dialogs.expectBox("Save as default?",
                             "Message sent and acknowledgement received. Do you want to save LAB7 to receive all "
                             "future messages from this computer ?",
                             BoxAnswer::No);
    click("Command3");
    QCOMPARE(server_->sent.size(), std::size_t(1));
}

void FrmMainAlertsTest::theReportGoesToTheChosenComputer() {
    main_->installation.settings.alertRecipient.assign(toPage("DESK2"));
    open();
    answer();
    main_->chooseSource("1234");
    click("CommandButton3");
    const std::string moment = "15/11/2026 10:20:30\r\n";
    QCOMPARE(server_->sent,
             (std::vector<std::string>{
                 "LAB7\xFF 1\xFF" + moment + " File list complete for Job ID : 1234\xFF" + moment +
                 "File list complete for job ID : 1234 on LAB7\r\nTotal Files : 1 (Quality : 100.00%)\r\nGood Files : "
                 "1\r\n\r\nPlease note the following messages\r\n----------------------------------\r\n"
                 "----------------------------------\r\n\xFF"
                 "0"}));
    QVERIFY(!isBusy());
}

void FrmMainAlertsTest::aReportThatNobodyAcknowledgesIsTold() {
    main_->installation.settings.alertRecipient.assign(toPage("DESK2"));
    open();
    main_->chooseSource("1234");
    main_->dialogs.expectBox("File list complete", "File listing complete, but could not send notification to DESK2");
    click("CommandButton3");
    QVERIFY(main_->control<QPushButton>("CommandButton3").isEnabled());
}

void FrmMainAlertsTest::aReportToThisComputerIsRefused() {
    open({"lab7", "DESK2"});
    click("Command2");
    choose(1);
    main_->chooseSource("1234");
    main_->dialogs.expectBox("Error", "Recipient of message is the same as the sender !", BoxAnswer::Ok,
                             BoxStyle::Warning);
    click("CommandButton3");
    QVERIFY(server_->sent.empty());
}

void FrmMainAlertsTest::theFirstItemReceivesNoReport() {
    open();
    main_->chooseSource("1234");
    click("CommandButton3");
    QVERIFY(server_->sent.empty());
}

QTEST_MAIN(FrmMainAlertsTest)
#include "frmMain_alerts_test.moc"
