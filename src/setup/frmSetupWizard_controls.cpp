// SPDX-License-Identifier: MIT
// The controls of the Setup Wizard and where they stand.
#include <QGridLayout>
#include <QHBoxLayout>
#include <QTimer>
#include <QVBoxLayout>

#include "setup/frmSetupWizard.h"
#include "ui/theme.h"

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

void addPathRow(QGridLayout& grid, int row, QLabel* label, QLineEdit* box, QPushButton* browse) {
    label->setBuddy(box);
    grid.addWidget(label, row, 0);
    grid.addWidget(box, row, 1);
    grid.addWidget(browse, row, 2);
}

QLabel* makeHint(const char* name) {
    QLabel* hint = makeLabel(name, "Use the browse button to select the path");
    makeRemark(*hint);
    hint->setVisible(false);
    return hint;
}

QGridLayout* makeGrid() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(kSpacing);
    grid->setVerticalSpacing(kSpacing);
    grid->setColumnStretch(1, 1);
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

    auto* status = new QHBoxLayout;
    status->setSpacing(kSpacing);
    Label17 = makeElided("Label17", "");
    Label18 = makeElided("Label18", "");
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

QLineEdit* frmSetupWizard::createPath(const char* name) {
    auto* box = make<QLineEdit>(name);
    box->setReadOnly(true);
    box->installEventFilter(this);
    return box;
}

QWidget* frmSetupWizard::createMethodTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameMethod", "Setup Method");
    content->addWidget(makeLabel("Label3", "I want to setup my system by .."));
    const char* captions[] = {"Importing a current setup", "Manually Setup this sytem"};
    const char* names[] = {"Option1_0", "Option1_1"};
    for (std::size_t i = 0; i < Option1.size(); ++i) {
        Option1[i] = make<QRadioButton>(names[i]);
        Option1[i]->setText(QLatin1String(captions[i]));
        content->addWidget(Option1[i]);
    }
    Label4 = makeText("Label4", "");
    content->addWidget(Label4);
    Command1 = addNext(*content, "Command1");
    return tab;
}

QWidget* frmSetupWizard::createLocalTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameLocal", "Local Paths");
    Label5 = makeText("Label5", "");
    content->addWidget(Label5);
    QGridLayout* grid = makeGrid();
    Text1 = createPath("Text1");
    Command2 = makeButton("Command2", "Browse");
    addPathRow(*grid, 0, makeLabel("Label7", "Local Path"), Text1, Command2);
    Text2 = createPath("Text2");
    Command3 = makeButton("Command3", "Browse");
    addPathRow(*grid, 1, makeLabel("Label8", "Archive Path"), Text2, Command3);
    content->addLayout(grid);
    Label6 = makeHint("Label6");
    content->addWidget(Label6);
    Command6 = addNext(*content, "Command6");
    return tab;
}

QWidget* frmSetupWizard::createSharedTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameShared", "Shared DB Path");
    content->addWidget(
        makeText("Label9",
                 "Set this to the location on your network where the shared database is to be stored. If the "
                 "databases do not exist, then the local databases will be copied to the selected location."));
    Check5 = makeCheck("Check5", "Use Shared DB (Recommended))");
    content->addWidget(Check5);
    QGridLayout* grid = makeGrid();
    Text3 = createPath("Text3");
    Command4 = makeButton("Command4", "Browse");
    addPathRow(*grid, 0, makeLabel("Label10", "Shared DB Path"), Text3, Command4);
    content->addLayout(grid);
    Label11 = makeHint("Label11");
    content->addWidget(Label11);
    Check1 = makeCheck("Check1", "Test Network R/W Operations");
    content->addWidget(Check1);
    Command7 = addNext(*content, "Command7");
    return tab;
}

QWidget* frmSetupWizard::createDefaultsTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameDefaults", "Set Program Default Testing Settings");
    content->addWidget(makeText("Label12", "Select the default settings to use when running the software. "));
    Check2 = makeCheck("Check2", "Run File Header Test");
    Check3 = makeCheck("Check3", "Use Skip List");
    Check4 = makeCheck("Check4", "Use Common Headers");
    for (QCheckBox* box : {Check2, Check3, Check4}) content->addWidget(box);
    auto* line = new QHBoxLayout;
    line->setSpacing(kSpacing);
    Text4 = make<QLineEdit>("Text4");
    Text4->setFixedWidth(40);
    Text4->setAlignment(Qt::AlignCenter);
    QLabel* label = makeLabel("Label19", "File list separator");
    label->setBuddy(Text4);
    line->addWidget(label);
    line->addWidget(Text4);
    line->addStretch(1);
    content->addLayout(line);
    Command8 = addNext(*content, "Command8");
    return tab;
}

QWidget* frmSetupWizard::createAlertsTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameAlerts", "Alerts");
    content->addWidget(
        makeText("Label13",
                 "Select which computer to send alerts to. Note that the ZOV Messenger software needs to be "
                 "installed on the machine that is to receive the messages."));
    const auto addRecipient = [content](const char* labelName, const char* text, QComboBox* box, QPushButton* ask,
                                        QPushButton* revert) {
        QLabel* label = makeText(labelName, text);
        label->setBuddy(box);
        content->addWidget(label);
        auto* line = new QHBoxLayout;
        line->setSpacing(kSpacing);
        line->addWidget(box, 1);
        line->addWidget(ask);
        line->addWidget(revert);
        content->addLayout(line);
    };
    Combo1 = make<QComboBox>("Combo1");
    Command9 = makeButton("Command9", "Query");
    Command13 = makeButton("Command13", "Revert");
    addRecipient("Label14", "Set Computer to receive automatic program alerts", Combo1, Command9, Command13);
    Combo2 = make<QComboBox>("Combo2");
    Command10 = makeButton("Command10", "Query");
    Command15 = makeButton("Command15", "Revert");
    addRecipient("Label15", "Set Computer to receive 'file zipped' notifications", Combo2, Command10, Command15);
    Command11 = addNext(*content, "Command11");
    return tab;
}

QWidget* frmSetupWizard::createExportTab() {
    QVBoxLayout* content = nullptr;
    QWidget* tab = makeTab(content, "frameExport", "Export Settings");
    content->addWidget(
        makeText("Label16",
                 "Clicking on [Export] allows you to export these settings to a shared location where they may be "
                 "imported by other ZOV Systems on your netwrok. This will save time when intalling the software "
                 "on multiple machines."));
    Command12 = makeButton("Command12", "Export");
    content->addWidget(Command12, 0, Qt::AlignRight);
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
