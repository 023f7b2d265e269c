// SPDX-License-Identifier: MIT
#include "setup/frmSetupWizard.h"

#include <QApplication>
#include <QKeyEvent>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTimer>

#include "text/list_text.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"

namespace quillon {

frmSetupWizard::frmSetupWizard(const ScreenContext& context, std::shared_ptr<NetworkProvider> network)
    : StepScreen(context.loop),
      context_(context),
      exchange_(AlertScreen::SetupWizard, wServer_, wClient_, context.installation, context.surroundings,
                [] { return std::string(); }),
      wizard_(context.installation, context.surroundings, exchange_, std::move(network), *this) {
    setObjectName(QStringLiteral("frmSetupWizard"));
    setWindowTitle(QStringLiteral("Setup Wizard"));
    createControls();
    wizard_.load();
    showState();
    connectControls();
}

void frmSetupWizard::connectControls() {
    connect(SftTabs1, &QTabWidget::currentChanged, this, [this](int tab) {
        if (tab >= 0)
            run([this, tab] { wizard_.selectTab(static_cast<std::size_t>(tab)); });
    });
    for (std::size_t i = 0; i < Option1.size(); ++i) {
        const auto choose = [this, i] { run([this, i] { wizard_.chooseMethod(static_cast<SetupMethod>(i)); }); };
        // A click on the chosen one counts too: its text may be another one by then.
        connect(Option1[i], &QRadioButton::clicked, this, choose);
        connect(Option1[i], &QRadioButton::toggled, this, [choose](bool on) {
            if (on)
                choose();
        });
    }
    connect(Check5, &QCheckBox::toggled, this, [this](bool on) { run([this, on] { wizard_.setUseSharedDb(on); }); });
    connect(Timer1, &QTimer::timeout, this, [this] { run([this] { wizard_.hideHints(); }); });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
    connectSteps();
    connectRecipients();
}

void frmSetupWizard::connectSteps() {
    const std::pair<QPushButton*, void (SetupWizard::*)()> steps[] = {{Command1, &SetupWizard::nextMethod},
                                                                      {Command2, &SetupWizard::browseLocalPath},
                                                                      {Command3, &SetupWizard::browseArchivePath},
                                                                      {Command6, &SetupWizard::nextLocalPaths},
                                                                      {Command4, &SetupWizard::browseSharedPath},
                                                                      {Command7, &SetupWizard::nextSharedPath},
                                                                      {Command8, &SetupWizard::nextDefaults},
                                                                      {Command11, &SetupWizard::nextAlerts},
                                                                      {Command12, &SetupWizard::exportRecord},
                                                                      {Command14, &SetupWizard::done},
                                                                      {Command5, &SetupWizard::exit}};
    // A step that turns the event loop must end before the screen goes.
    const auto mayRun = [this](const QPushButton* button) {
        return !isRunning() || (button != Command5 && button != Command14);
    };
    for (const auto& [button, step] : steps)
        connect(button, &QPushButton::clicked, this, [this, mayRun, button = button, step = step] {
            if (mayRun(button))
                run([this, step] { (wizard_.*step)(); });
        });
}

void frmSetupWizard::connectRecipients() {
    const auto connectOne = [this](WizardRecipient which, QComboBox& box, QPushButton& ask, QPushButton& revert) {
        const auto choose = [this, which](int index) { run([=, this] { wizard_.chooseRecipient(which, index); }); };
        connect(&box, &QComboBox::activated, this, choose);  // the same one again, too
        connect(&box, &QComboBox::currentIndexChanged, this, choose);
        connect(&ask, &QPushButton::clicked, this,
                [this, which] { run([=, this] { wizard_.pressRecipientButton(which); }); });
        connect(&revert, &QPushButton::clicked, this,
                [this, which] { run([=, this] { wizard_.revertRecipient(which); }); });
    };
    connectOne(WizardRecipient::Alert, *Combo1, *Command9, *Command13);
    connectOne(WizardRecipient::Zip, *Combo2, *Command10, *Command15);
}

void frmSetupWizard::readInputs() {
    SetupWizardState& state = wizard_.state;
    state.testNetwork = Check1->isChecked();
    state.runHeaderTest = Check2->isChecked();
    state.useSkipList = Check3->isChecked();
    state.useCommonHeaders = Check4->isChecked();
    state.separator = fromQt(Text4->text());
}

void frmSetupWizard::showState() {
    const SetupWizardState& state = wizard_.state;
    {
        const QSignalBlocker blocker(SftTabs1);
        for (std::size_t i = 0; i < kWizardTabCount; ++i)
            SftTabs1->setTabEnabled(static_cast<int>(i), state.tabEnabled[i]);
        SftTabs1->setCurrentIndex(static_cast<int>(state.currentTab));
    }
    if (state.method != SetupMethod::None)
        showTick(*Option1[static_cast<std::size_t>(state.method)], true);
    Label4->setText(toQt(state.methodText));
    Command1->setEnabled(state.methodNextEnabled);
    showPaths();
    showChecks();
    showRecipients(state.alertRecipients, *Combo1, *Command9);
    showRecipients(state.zipRecipients, *Combo2, *Command10);
    Label17->setText(toQt(state.copyStatus));
    Label18->setText(toQt(state.networkStatus));
    ProgressBar1->setVisible(state.progressVisible);
    ProgressBar1->setValue(static_cast<int>(state.progress));
    showPointer(*this, state.busyPointer);
}

void frmSetupWizard::showPaths() {
    const SetupWizardState& state = wizard_.state;
    Label5->setText(toQt(state.guide));
    showText(*Text1, readable(state.localPath.native()));
    showText(*Text2, readable(state.archivePath.native()));
    showText(*Text3, readable(state.sharedPath.native()));
    Command3->setEnabled(state.browseArchiveEnabled);
    Command6->setEnabled(state.localPathsNextEnabled);
    Command7->setEnabled(state.sharedPathNextEnabled);
    Label6->setVisible(state.localHintVisible);
    Label11->setVisible(state.sharedHintVisible);
}

void frmSetupWizard::showChecks() {
    const SetupWizardState& state = wizard_.state;
    showTick(*Check5, state.useSharedDb);
    showTick(*Check1, state.testNetwork);
    showTick(*Check2, state.runHeaderTest);
    showTick(*Check3, state.useSkipList);
    showTick(*Check4, state.useCommonHeaders);
}

void frmSetupWizard::showRecipients(const RecipientBox& shown, QComboBox& box, QPushButton& button) {
    showChoice(box, shown);
    button.setText(toQt(shown.button().caption));
    button.setEnabled(shown.button().enabled);
}

void frmSetupWizard::beep() {
    QApplication::beep();
}

void frmSetupWizard::focusBrowse(WizardPath path) {
    QPushButton* buttons[] = {Command2, Command3, Command4};
    showState();  // a button on another tab, or switched off, takes no focus
    buttons[static_cast<std::size_t>(path)]->setFocus();
}

void frmSetupWizard::startHintTimer() {
    Timer1->start();
}

void frmSetupWizard::leave(bool reload) {
    setLeft();
    Timer1->stop();
    hide();
    MainWindowDoor* main = context_.navigator.main();
    if (main != nullptr) {
        // The window's start sequence applies the settings; on a first run it has not run yet.
        if (reload || !main->isLoaded()) {
            main->reloadForm();
        } else {
            main->loadSettings();
            main->showMain();
        }
    }
    context_.navigator.unload(Screen::SetupWizard);
}

// A path box is shown only: a key asks for its browse button instead. Keys that move between controls still do.
bool frmSetupWizard::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Tab || key == Qt::Key_Backtab || key == Qt::Key_Shift)
        return QWidget::eventFilter(watched, event);
    const std::pair<QLineEdit*, WizardPath> boxes[] = {
        {Text1, WizardPath::Local}, {Text2, WizardPath::Archive}, {Text3, WizardPath::Shared}};
    for (const auto& [box, path] : boxes) {
        if (watched == box) {
            run([this, path = path] { wizard_.keyInPath(path); });
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

// The close box asks as "Exit" does.
void frmSetupWizard::leaveOrAsk() {
    run([this] { wizard_.exit(); });
}

}  // namespace quillon
