// SPDX-License-Identifier: MIT
#include "widgets/step_screen.h"

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include "support/fake_surroundings.h"
#include "support/temp_folder.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/window_event_loop.h"

using namespace quillon;

namespace {

// An input that is heard, one that starts a step, and a button whose step the test gives.
class Probe final : public StepScreen {
public:
    explicit Probe(const ScreenContext& context) : StepScreen(context, Screen::Errors, "probe", "Probe") {
        auto* layout = new QVBoxLayout(this);
        for (QWidget* part : {static_cast<QWidget*>(heard), static_cast<QWidget*>(stepped), static_cast<QWidget*>(go)})
            layout->addWidget(part);
        heard->setObjectName(QStringLiteral("heard"));
        hear(heard, &QLineEdit::textChanged, [this](const QString& text) { state = fromQt(text); });
        step(stepped, &QLineEdit::textChanged, [this](const QString& text) {
            ++steps;
            state = fromQt(text);
        });
        click(go, [this] { onStep(); });
        closeOnEscape();
        begin();
    }
    using ScreenSteps::focus;
    using ScreenSteps::isRunning;
    using ScreenSteps::showState;

    QLineEdit* heard = new QLineEdit;
    QLineEdit* stepped = new QLineEdit;
    QPushButton* go = new QPushButton;
    std::string state = "first";
    int steps = 0;
    int shown = 0;
    std::function<void()> onStep = [] {};

private:
    void showControls() override {
        ++shown;
        showText(*heard, state);
        showText(*stepped, state);
    }
};

}  // namespace

class StepScreenTest : public QObject {
    Q_OBJECT

private slots:
    void showingIsNotTyping();
    void anInputGoesIntoTheStateAndShowsNothing();
    void theStateIsShownBehindAStepAndAtEachRefresh();
    void stepsRunWithinSteps();
    void aScreenClosedWithinAStepGoesBehindTheLastOne();
    void focusComesBehindTheState();
    void escapeAsksBeforeItDropsTypedText();
    void escapeLeavesWhenNothingIsTyped();

private:
    Probe& open() {
        navigator_.add(Screen::Errors, [this](const std::any&) { return std::make_unique<Probe>(context_); });
        navigator_.open(Screen::Errors);
        return *static_cast<Probe*>(navigator_.window(Screen::Errors));
    }

    test::TempFolder folder_;
    test::FakeSurroundings fake_;
    Installation installation_{folder_ / "app"};
    KeptFiles kept_{installation_, fake_.clock};
    WindowEventLoop loop_{fake_.clock};
    Navigator navigator_;
    ScreenContext context_{installation_, fake_.surroundings, kept_, navigator_, loop_};
};

void StepScreenTest::showingIsNotTyping() {
    Probe& screen = open();
    QCOMPARE(screen.stepped->text(), QStringLiteral("first"));
    screen.state = "second";
    screen.showState();
    QCOMPARE(screen.heard->text(), QStringLiteral("second"));
    QCOMPARE(screen.steps, 0);
    navigator_.unload(Screen::Errors);
}

void StepScreenTest::anInputGoesIntoTheStateAndShowsNothing() {
    Probe& screen = open();
    const int before = screen.shown;
    screen.heard->setText(QStringLiteral("typed"));
    QCOMPARE(screen.state, std::string("typed"));
    QCOMPARE(screen.shown, before);
    navigator_.unload(Screen::Errors);
}

void StepScreenTest::theStateIsShownBehindAStepAndAtEachRefresh() {
    Probe& screen = open();
    screen.stepped->setText(QStringLiteral("typed"));
    QCOMPARE(screen.steps, 1);
    QCOMPARE(screen.heard->text(), QStringLiteral("typed"));
    screen.state = "by a pass";
    loop_.refreshScreens();
    QCOMPARE(screen.heard->text(), QStringLiteral("by a pass"));
    navigator_.unload(Screen::Errors);
}

void StepScreenTest::stepsRunWithinSteps() {
    Probe& screen = open();
    screen.onStep = [&screen] { screen.stepped->setText(QStringLiteral("meanwhile")); };
    screen.go->click();
    QCOMPARE(screen.steps, 1);
    QVERIFY(!screen.isRunning());
    QCOMPARE(screen.heard->text(), QStringLiteral("meanwhile"));
    navigator_.unload(Screen::Errors);
}

void StepScreenTest::aScreenClosedWithinAStepGoesBehindTheLastOne() {
    Probe& screen = open();
    bool stayed = false;
    screen.onStep = [&] {
        screen.close();
        stayed = screen.isVisible();
    };
    screen.go->click();
    QVERIFY(stayed);
    QVERIFY(navigator_.window(Screen::Errors) == nullptr);
}

void StepScreenTest::focusComesBehindTheState() {
    Probe& screen = open();
    QVERIFY(QTest::qWaitForWindowActive(&screen));
    screen.state = "new";
    screen.focus("heard");
    QCOMPARE(screen.heard->text(), QStringLiteral("new"));
    QVERIFY(screen.heard->hasFocus());
    navigator_.unload(Screen::Errors);
}

void StepScreenTest::escapeAsksBeforeItDropsTypedText() {
    Probe& screen = open();
    QVERIFY(QTest::qWaitForWindowActive(&screen));
    QTest::keyClicks(screen.heard, QStringLiteral("x"));
    const char* question = "What you have typed is not stored. Do you want to leave and drop it?";
    fake_.dialogs.expectBox("Leave this screen ?", question, BoxAnswer::No, BoxStyle::Warning, BoxButtons::YesNo);
    QTest::keyClick(&screen, Qt::Key_Escape);
    QVERIFY(screen.isVisible());
    QCOMPARE(screen.heard->text(), QStringLiteral("firstx"));
    fake_.dialogs.expectBox("Leave this screen ?", question, BoxAnswer::Yes);
    QTest::keyClick(&screen, Qt::Key_Escape);
    QVERIFY(navigator_.window(Screen::Errors) == nullptr);
    QVERIFY(fake_.dialogs.done());
}

void StepScreenTest::escapeLeavesWhenNothingIsTyped() {
    Probe& screen = open();
    QVERIFY(QTest::qWaitForWindowActive(&screen));
    QTest::keyClicks(screen.heard, QStringLiteral("x"));
    screen.state = "taken over";
    screen.showState();  // as behind "Add"
    QTest::keyClick(&screen, Qt::Key_Escape);
    QVERIFY(navigator_.window(Screen::Errors) == nullptr);
}

QTEST_MAIN(StepScreenTest)
#include "step_screen_test.moc"
