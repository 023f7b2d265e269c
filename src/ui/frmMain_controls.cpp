// SPDX-License-Identifier: MIT
// The left side of the main window, its commands and its log; and how the parts stand together.
#include "ui/frmMain_controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include "ui/grade_bar.h"
#include "ui/main_area.h"
#include "widgets/control_maker.h"
#include "widgets/elided_label.h"
#include "widgets/grid.h"
#include "widgets/theme.h"

namespace quillon {
void frmMainControls::createControls(QMainWindow& window) {
    createMenus(window);
    createToolbar(window);
    createSource();
    createOptions();
    createAlerts();
    createOwnOptions();
    createCommands();
    createStats();
    arrange(window);
    createStatusBar(window);
}

void frmMainControls::createSource() {
    Frame1 = makeFrame("Frame1", "Source Drive/Folder");
    auto* grid = new QGridLayout(Frame1);
    grid->setSpacing(kSpacing);
    Label28 = makeLabel("Label28", "&Job ID");
    Textbox1 = make<QLineEdit>("Textbox1");
    Textbox1->setToolTip(QStringLiteral("Enter the Job Number or unique ID"));
    Textbox1->setMinimumWidth(110);
    Textbox1->setAcceptDrops(false);  // a folder dropped here is a source, not text
    Label28->setBuddy(Textbox1);
    CommandButton1 = makeButton("CommandButton1", "&Browse for Drive/Folder");
    Label2 = makeLabel("Label2", "Source:");
    lblSource = make<ElidedLabel>("lblSource");
    chkCopy = makeCheck("chkCopy", "&Copy to ->");
    Command1 = makeButton("Command1", "");
    Command1->setIcon(icon(QStringLiteral("target")));
    Command1->setAccessibleName(QStringLiteral("Select target to copy files to"));
    Label3 = makeLabel("Label3", "Target:");
    lblTarget = make<ElidedLabel>("lblTarget");

    grid->addWidget(Label28, 0, 0);
    grid->addWidget(Textbox1, 0, 1);
    grid->addWidget(CommandButton1, 0, 2, 1, 2);
    grid->addWidget(Label2, 1, 0);
    grid->addWidget(lblSource, 1, 1, 1, 3);
    grid->addWidget(Label3, 2, 0);
    grid->addWidget(lblTarget, 2, 1);
    grid->addWidget(chkCopy, 2, 2);
    grid->addWidget(Command1, 2, 3, Qt::AlignRight);
    grid->setColumnStretch(1, 1);
}

void frmMainControls::createOptions() {
    Frame3 = makeFrame("Frame3", "Options");
    auto* grid = new QGridLayout(Frame3);
    grid->setSpacing(kSpacing);
    chkFileQuality = makeCheck("chkFileQuality", "Check file &quality");
    chkUseSkip = makeCheck("chkUseSkip", "Use s&kip list");
    chkCommon = makeCheck("chkCommon", "&Use Common Headers");
    chkDefaults = makeCheck("chkDefaults", "Use &defaults");
    grid->addWidget(chkFileQuality, 0, 0);
    grid->addWidget(chkUseSkip, 0, 1);
    grid->addWidget(chkCommon, 1, 0);
    grid->addWidget(chkDefaults, 1, 1);

    Label12 = makeLabel("Label12", "File List Sep&arator");
    Text1 = make<QLineEdit>("Text1");
    Text1->setFixedWidth(40);
    Text1->setAlignment(Qt::AlignHCenter);
    Text1->setAcceptDrops(false);
    Label12->setBuddy(Text1);
    separatorNote = makeLabel("separatorNote",
                              "Used for multiple file lists for same job. E.G. 1234-Partition 1, 1234-Partition 2");
    separatorNote->setWordWrap(true);
    makeRemark(*separatorNote);
    auto* row = new QHBoxLayout;
    row->setSpacing(kSpacing);
    row->addWidget(Label12);
    row->addWidget(Text1);
    row->addWidget(separatorNote, 1);
    grid->addLayout(row, 2, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
}

void frmMainControls::createAlerts() {
    Frame2 = makeFrame("Frame2", "Alerts");
    auto* row = new QHBoxLayout(Frame2);
    row->setSpacing(kSpacing);
    Label23 = makeLabel("Label23", "On f&inish Send to");
    Combo1 = make<QComboBox>("Combo1");
    Combo1->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    Combo1->setMinimumContentsLength(6);
    Label23->setBuddy(Combo1);
    Command2 = makeButton("Command2", "Query &Network");
    Command3 = makeButton("Command3", "&Test");
    row->addWidget(Label23);
    row->addWidget(Combo1, 1);
    row->addWidget(Command2);
    row->addWidget(Command3);
}

void frmMainControls::createCommands() {
    Frame4 = makeFrame("Frame4", "Commands");
    auto* row = new QHBoxLayout(Frame4);
    row->setSpacing(kSpacing);
    CommandButton3 = makeButton("CommandButton3", "&Run");
    makePrimary(*CommandButton3);
    CommandButton4 = makeButton("CommandButton4", "&Stop");
    CommandButton5 = makeButton("CommandButton5", "Vi&ew");
    CommandButton6 = makeButton("CommandButton6", "&Zip");
    for (QPushButton* button : {CommandButton3, CommandButton4, CommandButton5, CommandButton6}) {
        button->setMinimumWidth(92);
        row->addWidget(button);
    }
    Check1 = makeCheck("Check1", "Show &Progress");
    row->addSpacing(kSpacing);
    row->addWidget(Check1);
    row->addSpacing(kSpacing);

    auto* place = new QWidget;  // keeps the buttons where they are when both bars are hidden
    auto* bars = new QVBoxLayout(place);
    bars->setContentsMargins(0, 0, 0, 0);
    bars->setSpacing(4);
    ProgressBar1 = makeProgress("ProgressBar1", "Progress of the job");
    ProgressBar2 = makeProgress("ProgressBar2", "Progress of the file");
    Label2_1 = makeLabel("Label2_1", "");
    makeRemark(*Label2_1);
    auto* fileRow = new QHBoxLayout;
    fileRow->setSpacing(kSpacing);
    fileRow->addWidget(ProgressBar2, 1);
    fileRow->addWidget(Label2_1);
    bars->addStretch();
    bars->addWidget(ProgressBar1);
    bars->addLayout(fileRow);
    bars->addStretch();
    row->addWidget(place, 1);
}

void frmMainControls::createLog(QVBoxLayout& layout) {
    iGrid1 = make<Grid>("iGrid1");
    iGrid1->setAccessibleName(QStringLiteral("Job log"));
    iGrid1->setMinimumHeight(72);
    layout.addWidget(iGrid1, 1);
    sFileTU = make<ElidedLabel>("sFileTU");
    sFileTU->setAccessibleName(QStringLiteral("Current file"));
    keepRoomWhenHidden(*sFileTU);  // the buttons beside it stay as wide as they are
    Command4 = makeButton("Command4", "Clear &Log");
    Command5 = makeButton("Command5", "Check F&olders");
    auto* row = new QHBoxLayout;
    row->setSpacing(kSpacing);
    row->addWidget(sFileTU, 1);
    row->addWidget(Command4);
    row->addWidget(Command5);
    layout.addLayout(row);
}

// Source, options and alerts on the left, score board on the right.
QWidget* frmMainControls::arrangeUpper() const {
    auto* setupSide = new QWidget;
    auto* setup = new QVBoxLayout(setupSide);
    setup->setContentsMargins(0, 0, 0, 0);
    setup->setSpacing(kSpacing);
    setup->addWidget(Frame1);
    setup->addWidget(Frame3);
    setup->addWidget(Frame2);
    setup->addWidget(ownOptions);
    setup->addStretch();
    return new MainArea(setupSide, Frame5, scoreBoard);
}

void frmMainControls::arrange(QMainWindow& window) {
    auto* lower = new QWidget;
    auto* log = new QVBoxLayout(lower);
    log->setContentsMargins(0, kSpacing, 0, 0);
    log->setSpacing(kSpacing);
    log->addWidget(Frame4);  // below what may have to be scrolled to: Run and Stop are always at hand
    Label8 = make<ElidedLabel>("Label8");
    Label8->setAccessibleName(QStringLiteral("Status"));
    log->addWidget(Label8);
    createLog(*log);

    auto* splitter = make<QSplitter>("splitter");
    splitter->setOrientation(Qt::Vertical);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(arrangeUpper());
    splitter->addWidget(lower);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    auto* central = new QWidget;
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(kMargin, kSpacing, kMargin, kSpacing);
    layout->addWidget(splitter);
    window.setCentralWidget(central);
    chainOwnOptions();
}

}  // namespace quillon
