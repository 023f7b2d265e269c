// SPDX-License-Identifier: MIT
// Makes the controls of the screen "View File List" and lays them out.
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include "viewer/frmViewList.h"
#include "widgets/control_maker.h"
#include "widgets/grid.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

constexpr int kPathWidth = 420;
constexpr int kExtWidth = 50;

QHBoxLayout* makeRow(QWidget* parent = nullptr) {
    auto* row = new QHBoxLayout(parent);
    row->setSpacing(kSpacing);
    return row;
}

QLineEdit* makeNumberBox(const char* name, const char* text, QLabel& label) {
    auto* box = make<QLineEdit>(name);
    box->setText(QLatin1String(text));
    box->setAlignment(Qt::AlignRight);
    box->setFixedWidth(72);
    label.setBuddy(box);
    return box;
}

}  // namespace

void frmViewList::createCategory() {
    Frame1 = makeFrame("Frame1", "Vew Files of type");
    auto* row = makeRow(Frame1);
    Combo1 = make<QComboBox>("Combo1");
    Combo1->setAccessibleName(QStringLiteral("Report message"));
    Combo1->setMaxVisibleItems(12);
    Combo1->setMinimumContentsLength(28);
    Command2 = makeButton("Command2", "&Filter");
    makePrimary(*Command2);
    Label5 = makeLabel("Label5", "&Max Files");
    Text1 = makeNumberBox("Text1", "3000", *Label5);
    Label9 = makeLabel("Label9", "&Start From");
    Text2 = makeNumberBox("Text2", "1", *Label9);
    Check1 = makeCheck("Check1", "&Use Ignore List");
    row->addWidget(Combo1, 1);
    row->addWidget(Command2);
    row->addSpacing(2 * kMargin);
    for (QWidget* part : {static_cast<QWidget*>(Label5), static_cast<QWidget*>(Text1), static_cast<QWidget*>(Label9),
                          static_cast<QWidget*>(Text2)})
        row->addWidget(part);
    row->addSpacing(kSpacing);
    row->addWidget(Check1);
}

void frmViewList::createRows() {
    Frame2 = makeFrame("Frame2", "Matching Files");
    auto* layout = new QVBoxLayout(Frame2);
    layout->setSpacing(kSpacing);
    iGrid1 = make<Grid>("iGrid1");
    iGrid1->setAccessibleName(QStringLiteral("Matching files"));
    showColumns(false);
    iGrid1->setTextElideMode(Qt::ElideMiddle);
    layout->addWidget(iGrid1, 1);
    createLegend();
    mnuMnu = new QMenu(this);
    mnuMnu->setObjectName(QStringLiteral("mnuMnu"));
    mnuAddSkip = mnuMnu->addAction(QStringLiteral("Add to Skip List"));
    mnuAddSkip->setObjectName(QStringLiteral("mnuAddSkip"));
}

void frmViewList::showColumns(bool withOwn) {
    shownEvidence_ = withOwn;
    std::vector<GridColumn> columns = {{"Path", kPathWidth, false}, {"Ext", kExtWidth, false}, {"Problem!", 0, true}};
    if (withOwn) {
        for (const OwnColumn& own : kOwnColumns) columns.push_back({own.title, own.width, false});
    }
    iGrid1->setColumns(columns);
    // Paths take the room that a wide window gives.
    iGrid1->horizontalHeader()->setStretchLastSection(false);
    iGrid1->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
}

void frmViewList::createLegend() {
    auto* row = makeRow();
    Label1 = makeLabel("Label1", "");
    Label6 = makeLabel("Label6", "File marked");
    Label7 = makeLabel("Label7", "    ");
    Label7->setAutoFillBackground(true);
    QPalette swatch = Label7->palette();
    swatch.setColor(QPalette::Window, QColor(187, 10, 10));
    Label7->setPalette(swatch);
    Label8 = makeLabel("Label8", "Have no extension and can not be edited");
    commaRemark_ = makeLabel("commaRemark_", "");
    makeRemark(*commaRemark_);
    row->addWidget(Label1, 1);
    row->addWidget(commaRemark_);
    for (QLabel* legend : {Label6, Label7, Label8}) {
        row->addWidget(legend);
        legend->hide();
    }
    static_cast<QVBoxLayout*>(Frame2->layout())->addLayout(row);
}

void frmViewList::createEditor() {
    Frame3 = makeFrame("Frame3", "Extension Editor");
    auto* row = makeRow(Frame3);
    Label2 = makeLabel("Label2", "&Extension");
    Combo2 = make<QComboBox>("Combo2");
    Combo2->setMinimumContentsLength(12);
    Combo2->setMaxVisibleItems(20);
    Label2->setBuddy(Combo2);
    Command3 = makeButton("Command3", "&Run");
    Command4 = makeButton("Command4", "Re&test");
    regradeKept_ = makeButton("regradeKept_", "Regrade from &kept heads");
    Label4 = make<ElidedLabel>("Label4");
    Label4->setAccessibleName(QStringLiteral("Status"));
    Label3 = makeLabel("Label3", "Mark Files as");
    Combo3 = make<QComboBox>("Combo3");
    Command5 = makeButton("Command5", "Run");
    Command6 = makeButton("Command6", "Retest Skip List");
    Command6->setEnabled(false);
    for (QPushButton* button : {Command2, Command3, Command4}) button->setMinimumWidth(96);
    row->addWidget(Label2);
    row->addWidget(Combo2);
    row->addWidget(Command3);
    row->addWidget(Command4);
    row->addWidget(regradeKept_);
    row->addSpacing(kSpacing);
    row->addWidget(Label4, 1);
    for (QWidget* hidden : {static_cast<QWidget*>(Label3), static_cast<QWidget*>(Combo3),
                            static_cast<QWidget*>(Command5), static_cast<QWidget*>(Command6)}) {
        row->addWidget(hidden);
        hidden->hide();
    }
}

void frmViewList::arrange() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kMargin);
    layout->addWidget(Frame1);
    layout->addWidget(Frame2, 1);
    layout->addWidget(Frame3);
    auto* row = makeRow();
    Command1 = makeButton("Command1", "&Done");
    Command1->setMinimumWidth(96);
    openOverview = makeButton("openOverview", "&Overview");
    openOverview->setMinimumWidth(96);
    openOverview->setFocusPolicy(Qt::ClickFocus);  // the Tab key goes the told way; this has Alt+O
    copyThese_ = makeButton("copyThese_", "&Copy These Files ...");
    copyThese_->setFocusPolicy(Qt::ClickFocus);  // as above, with Alt+C
    row->addWidget(openOverview);
    row->addWidget(copyThese_);
    row->addStretch();
    row->addWidget(Command1);
    layout->addLayout(row);
    busyParts_ = {Frame1, Frame2, Frame3, openOverview, copyThese_, Command1};
    resize(1000, 700);
}

void frmViewList::setTabOrders() {
    const std::array<QWidget*, 11> order = {Combo1, Command2, Text1,    Text2,        Check1,  iGrid1,
                                            Combo2, Command3, Command4, regradeKept_, Command1};
    for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
    Combo1->setFocus();
}

}  // namespace quillon
