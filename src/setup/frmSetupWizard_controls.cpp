// SPDX-License-Identifier: MIT
// The controls of the Setup Wizard and where they stand.
#include <tuple>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QTimer>
#include <QVBoxLayout>

#include "setup/frmSetupWizard.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

// A tab with one frame; the frame's layout is filled by the caller.
QWidget* makeTab(QVBoxLayout*& content, const char* name, const char* caption) {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    QGroupBox* frame = makeFrame(name, caption);
    content = new QVBoxLayout(frame);
    content->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    content->setSpacing(kMargin);
    layout->addWidget(frame, 1);
    return page;
}

QLabel* makeText(const char* name, const char* text) {
    QLabel* label = makeLabel(name, text);
    label->setWordWrap(true);
    return label;
}

// "Next >" at the lower right of a tab.
QPushButton* addNext(QVBoxLayout& layout, const char* name, const char* caption = "Next >") {
    layout.addStretch(1);
    auto* line = new QHBoxLayout;
    line->addStretch(1);
    QPushButton* button = makeButton(name, caption);
    makePrimary(*button);
    line->addWidget(button);
    layout.addLayout(line);
    return button;
}

// Puts a control into a layout and gives it back.
template <typename Control>
Control* add(QBoxLayout& layout, Control* control) {
    layout.addWidget(control);
    return control;
}

QLabel* makeHint(const char* name) {
    QLabel* hint = makeLabel(name, "Use the browse button to select the path");
    makeRemark(*hint);
    hint->setVisible(false);
    return hint;
}

using PathRow = std::tuple<QLineEdit*, QPushButton*>;

// A path with its label ahead and its "Browse" behind.
PathRow addPath(QGridLayout& grid, QLabel* label, const char* box, const char* browse) {
    const int row = grid.rowCount();
    PathRow made(make<QLineEdit>(box), makeButton(browse, "Browse"));
    const auto& [text, button] = made;
    text->setReadOnly(true);
    label->setBuddy(text);
    grid.addWidget(label, row, 0);
    grid.addWidget(text, row, 1);
    grid.addWidget(button, row, 2);
    return made;
}

using RecipientRow = std::tuple<QComboBox*, QPushButton*, QPushButton*>;

// A recipient below its label, with the button that queries or tests and "Revert".
RecipientRow addRecipient(QBoxLayout& layout, QLabel* label, const char* box, const char* ask, const char* revert) {
    RecipientRow made(make<QComboBox>(box), makeButton(ask, "Query"), makeButton(revert, "Revert"));
    label->setBuddy(std::get<0>(made));
    layout.addWidget(label);
    auto* line = new QHBoxLayout;
    line->setSpacing(kSpacing);
    line->addWidget(std::get<0>(made), 1);
    line->addWidget(std::get<1>(made));
    line->addWidget(std::get<2>(made));
    layout.addLayout(line);
    return made;
}

QGridLayout* addGrid(QBoxLayout& layout) {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(kSpacing);
    grid->setVerticalSpacing(kSpacing);
    grid->setColumnStretch(1, 1);
    layout.addLayout(grid);
    return grid;
}

}  // namespace

void frmSetupWizard::createControls() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kSpacing);
    QLabel* heading = makeLabel("Label1", "Setup the ZOV Software");
    QFont large = heading->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    heading->setFont(large);
    layout->addWidget(heading);
    SftTabs1 = make<QTabWidget>("SftTabs1");
    SftTabs1->addTab(createMethodTab(), QStringLiteral("Setup DB"));
    SftTabs1->addTab(createLocalTab(), QStringLiteral("Local Paths"));
    SftTabs1->addTab(createSharedTab(), QStringLiteral("Shared Path"));
    SftTabs1->addTab(createDefaultsTab(), QStringLiteral("Defaults"));
    SftTabs1->addTab(createAlertsTab(), QStringLiteral("Alerts"));
    SftTabs1->addTab(createExportTab(), QStringLiteral("Export"));
    SftTabs1->addTab(new QWidget, QStringLiteral("Done"));
    layout->addWidget(SftTabs1, 1);
    for (QLineEdit* path : {Text1, Text2, Text3}) path->installEventFilter(this);

    auto* status = new QHBoxLayout;
    status->setSpacing(kSpacing);
    Label17 = make<ElidedLabel>("Label17");
    Label18 = make<ElidedLabel>("Label18");
    ProgressBar1 = makeProgress("ProgressBar1", "Progress of the archive");
    ProgressBar1->setMaximumWidth(200);
    Command5 = makeButton("Command5", "Exit");
    status->addWidget(Label17, 1);
    status->addWidget(Label18, 1);
    status->addWidget(ProgressBar1);
    status->addWidget(Command5);
    layout->addLayout(status);
    Timer1 = new QTimer(this);
    Timer1->setObjectName(QStringLiteral("Timer1"));
    Timer1->setInterval(kHintMilliseconds);
    Timer1->setSingleShot(true);
    resize(760, 500);
}

QWidget* frmSetupWizard::createMethodTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameMethod", "Setup Method");
    content->addWidget(makeLabel("Label3", "I want to setup my system by .."));
    const char* captions[] = {"Importing a current setup", "Manually Setup this sytem"};
    const char* names[] = {"Option1_0", "Option1_1"};
    for (std::size_t i = 0; i < Option1.size(); ++i) {
        Option1[i] = add(*content, make<QRadioButton>(names[i]));
        Option1[i]->setText(QLatin1String(captions[i]));
    }
    Label4 = add(*content, makeText("Label4", ""));
    Command1 = addNext(*content, "Command1");
    return tab;
}

QWidget* frmSetupWizard::createLocalTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameLocal", "Local Paths");
    Label5 = add(*content, makeText("Label5", ""));
    QGridLayout* grid = addGrid(*content);
    std::tie(Text1, Command2) = addPath(*grid, makeLabel("Label7", "Local Path"), "Text1", "Command2");
    std::tie(Text2, Command3) = addPath(*grid, makeLabel("Label8", "Archive Path"), "Text2", "Command3");
    Label6 = add(*content, makeHint("Label6"));
    Command6 = addNext(*content, "Command6");
    return tab;
}

QWidget* frmSetupWizard::createSharedTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameShared", "Shared DB Path");
    content->addWidget(
        makeText("Label9",
                 "Set this to the location on your network where the shared database is to be stored. "
                 "If the databases do not exist, then the local databases will be copied to the selected location."));
    Check5 = add(*content, makeCheck("Check5", "Use Shared DB (Recommended))"));
    QGridLayout* grid = addGrid(*content);
    std::tie(Text3, Command4) = addPath(*grid, makeLabel("Label10", "Shared DB Path"), "Text3", "Command4");
    Label11 = add(*content, makeHint("Label11"));
    Check1 = add(*content, makeCheck("Check1", "Test Network R/W Operations"));
    Command7 = addNext(*content, "Command7");
    return tab;
}

QWidget* frmSetupWizard::createDefaultsTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameDefaults", "Set Program Default Testing Settings");
    content->addWidget(makeText("Label12", "Select the default settings to use when running the software. "));
    Check2 = add(*content, makeCheck("Check2", "Run File Header Test"));
    Check3 = add(*content, makeCheck("Check3", "Use Skip List"));
    Check4 = add(*content, makeCheck("Check4", "Use Common Headers"));
    auto* line = new QHBoxLayout;
    line->setSpacing(kSpacing);
    QLabel* label = add(*line, makeLabel("Label19", "File list separator"));
    Text4 = add(*line, make<QLineEdit>("Text4"));
    Text4->setFixedWidth(40);
    Text4->setAlignment(Qt::AlignCenter);
    label->setBuddy(Text4);
    line->addStretch(1);
    content->addLayout(line);
    Command8 = addNext(*content, "Command8");
    return tab;
}

QWidget* frmSetupWizard::createAlertsTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameAlerts", "Alerts");
    content->addWidget(makeText(
        "Label13",
        "Select which computer to send alerts to. "
        "Note that the ZOV Messenger software needs to be installed on the machine that is to receive the messages."));
    std::tie(Combo1, Command9, Command13) =
        addRecipient(*content, makeText("Label14", "Set Computer to receive automatic program alerts"), "Combo1",
                     "Command9", "Command13");
    std::tie(Combo2, Command10, Command15) =
        addRecipient(*content, makeText("Label15", "Set Computer to receive 'file zipped' notifications"), "Combo2",
                     "Command10", "Command15");
    Command11 = addNext(*content, "Command11");
    return tab;
}

QWidget* frmSetupWizard::createExportTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameExport", "Export Settings");
    content->addWidget(
        makeText("Label16",
                 "Clicking on [Export] allows you to export these settings to a shared location where they may be "
                 "imported by other ZOV Systems on your netwrok. "
                 "This will save time when intalling the software on multiple machines."));
    Command12 = add(*content, makeButton("Command12", "Export"));
    content->setAlignment(Command12, Qt::AlignRight);
    content->addStretch(1);
    QGroupBox* frame = makeFrame("frameSave", "Save Settings");
    auto* save = new QVBoxLayout(frame);
    save->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    save->addWidget(makeText("Label20", "Click on 'Done' to save and activate the settings"));
    Command14 = addNext(*save, "Command14", "Done");
    tab->layout()->addWidget(frame);
    return tab;
}

}  // namespace quillon
