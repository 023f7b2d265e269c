// SPDX-License-Identifier: MIT
#include "setup/frmSetupWizard.h"

#include <QKeyEvent>
#include <QTimer>

#include "text/list_text.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"

namespace quillon {

frmSetupWizard::frmSetupWizard(const ScreenContext& context, std::shared_ptr<NetworkProvider> network)
    : StepScreen(context, Screen::SetupWizard, "frmSetupWizard", "Setup Wizard"),
      exchange_(
          AlertScreen::SetupWizard, wServer_, wClient_, context.installation, context.surroundings,
          [] { return std::string(); }, context.alertPorts),
      wizard_(context.installation, context.surroundings, exchange_, std::move(network), *this, context.warnInLog) {
    createControls();
    wizard_.load();
    connectControls();
    begin();
}

void frmSetupWizard::connectControls() {
    step(SftTabs1, &QTabWidget::currentChanged, [this](int tab) {
        if (tab >= 0)
            wizard_.selectTab(static_cast<std::size_t>(tab));
    });
    for (std::size_t i = 0; i < Option1.size(); ++i) {
        const auto choose = [this, i] { wizard_.chooseMethod(static_cast<SetupMethod>(i)); };
        // A click on the chosen one counts too: its text may be another one by then.
        step(Option1[i], &QRadioButton::clicked, choose);
        step(Option1[i], &QRadioButton::toggled, [choose](bool on) {
            if (on)
                choose();
        });
    }
    step(Check5, &QCheckBox::toggled, [this](bool on) { wizard_.setUseSharedDb(on); });
    step(Timer1, &QTimer::timeout, [this] { wizard_.hideHints(); });
    closeOnEscape(TypedText::ScreensOwn);
    connectSteps();
    connectRecipients();
    hearPlainInputs();
}

void frmSetupWizard::connectSteps() {
    const std::pair<QPushButton*, void (SetupWizard::*)()> steps[] = {
        {Command1, &SetupWizard::nextMethod},        {Command2, &SetupWizard::browseLocalPath},
        {Command3, &SetupWizard::browseArchivePath}, {Command6, &SetupWizard::nextLocalPaths},
        {Command4, &SetupWizard::browseSharedPath},  {Command7, &SetupWizard::nextSharedPath},
        {Command8, &SetupWizard::nextDefaults},      {Command11, &SetupWizard::nextAlerts},
        {Command12, &SetupWizard::exportRecord}};
    for (const auto& [button, next] : steps) click(button, [this, next = next] { (wizard_.*next)(); });
    const std::pair<QPushButton*, WizardEnd (SetupWizard::*)()> ends[] = {{Command14, &SetupWizard::done},
                                                                          {Command5, &SetupWizard::exit}};
    // A step that turns the event loop must end before the screen goes.
    for (const auto& [button, last] : ends)
        connect(button, &QPushButton::clicked, this, [this, last = last] {
            if (!isRunning())
                run([this, last] { end((wizard_.*last)()); });
        });
}

void frmSetupWizard::connectRecipients() {
    const auto connectOne = [this](WizardRecipient which, QComboBox& box, QPushButton& ask, QPushButton& revert) {
        const auto choose = [this, which](int index) { wizard_.chooseRecipient(which, index); };
        step(&box, &QComboBox::activated, choose);  // the same one again, too
        step(&box, &QComboBox::currentIndexChanged, choose);
        click(&ask, [this, which] { wizard_.pressRecipientButton(which); });
        click(&revert, [this, which] { wizard_.revertRecipient(which); });
    };
    connectOne(WizardRecipient::Alert, *Combo1, *Command9, *Command13);
    connectOne(WizardRecipient::Zip, *Combo2, *Command10, *Command15);
}

void frmSetupWizard::hearPlainInputs() {
    SetupWizardState& state = wizard_.state;
    const std::pair<QCheckBox*, bool*> boxes[] = {{Check1, &state.testNetwork},
                                                  {Check2, &state.runHeaderTest},
                                                  {Check3, &state.useSkipList},
                                                  {Check4, &state.useCommonHeaders}};
    for (const auto& [box, field] : boxes) hear(box, &QCheckBox::toggled, [field = field](bool on) { *field = on; });
    hear(Text4, &QLineEdit::textChanged, [&state](const QString& text) { state.separator = fromQt(text); });
}

void frmSetupWizard::showControls() {
    const SetupWizardState& state = wizard_.state;
    for (std::size_t i = 0; i < kWizardTabCount; ++i) SftTabs1->setTabEnabled(static_cast<int>(i), state.tabEnabled[i]);
    SftTabs1->setCurrentIndex(static_cast<int>(state.currentTab));
    if (state.method != SetupMethod::None)
        Option1[static_cast<std::size_t>(state.method)]->setChecked(true);
    Label4->setText(toQt(state.methodText));
    // Not while files are copied: a second step would work on half of them, and leaving would leave them half.
    const bool idle = !state.progressVisible;
    Command1->setEnabled(idle && state.methodNextEnabled);
    for (QPushButton* button : {Command5, Command8, Command11, Command14}) button->setEnabled(idle);
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
    Command6->setEnabled(!state.progressVisible && state.localPathsNextEnabled);
    Command7->setEnabled(!state.progressVisible && state.sharedPathNextEnabled);
    Label6->setVisible(state.localHintVisible);
    Label11->setVisible(state.sharedHintVisible);
}

void frmSetupWizard::showChecks() {
    const SetupWizardState& state = wizard_.state;
    Check5->setChecked(state.useSharedDb);
    Check1->setChecked(state.testNetwork);
    Check2->setChecked(state.runHeaderTest);
    Check3->setChecked(state.useSkipList);
    Check4->setChecked(state.useCommonHeaders);
}

void frmSetupWizard::showRecipients(const RecipientBox& shown, QComboBox& box, QPushButton& button) {
    showChoice(box, shown);
    button.setText(toQt(shown.button().caption));
    button.setEnabled(shown.button().enabled);
}

void frmSetupWizard::end(WizardEnd end) {
    if (end == WizardEnd::Stays)
        return;
    markUnloaded();
    Timer1->stop();
    hide();
    MainWindowDoor* main = context_.navigator.main();
    if (main != nullptr) {
        // The window's start sequence applies the settings; on a first run it has not run yet.
        if (end == WizardEnd::LeavesAndReloads || !main->isLoaded()) {
            main->reloadForm();
        } else {
            main->loadSettings();
            main->showMain();
        }
    }
    leave();
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
            run([this, path = path] {
                Timer1->start();
                wizard_.keyInPath(path);
            });
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

// The close box asks as "Exit" does.
void frmSetupWizard::leaveOrAsk() {
    run([this] { end(wizard_.exit()); });
}

}  // namespace quillon
