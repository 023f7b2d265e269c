// SPDX-License-Identifier: MIT
// Makes the controls of the screen "Extension Editor" and lays them out.
#include <array>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSplitter>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QVBoxLayout>

#include "editors/frmExtEditor.h"
#include "editors/frmExtEditor_consensus.h"
#include "widgets/control_maker.h"
#include "widgets/elided_label.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"
#include "widgets/page_remark.h"
#include "widgets/polled_label.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

constexpr int kTermWidth = 100;
constexpr int kOffsetWidth = 60;
constexpr int kTypeWidth = 50;
constexpr int kLeftWidth = 400;

// The list of files when it is closed: a long path is cut in the middle, so that the file's own name stays in view.
class PathBox final : public QComboBox {
protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QStylePainter painter(this);
        QStyleOptionComboBox option;
        initStyleOption(&option);
        painter.drawComplexControl(QStyle::CC_ComboBox, option);
        const int room =
            style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this).width();
        option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideMiddle, room - kSpacing);
        painter.drawControl(QStyle::CE_ComboBoxLabel, option);
    }
};

QPushButton* makeArrow(const char* name, const char* arrow, const char* meaning) {
    QPushButton* button = makeButton(name, "");
    button->setText(QString::fromUtf8(arrow));
    button->setAccessibleName(QLatin1String(meaning));
    button->setToolTip(QLatin1String(meaning));
    button->setFixedWidth(44);
    return button;
}

QHBoxLayout* addRow(QVBoxLayout& layout, std::initializer_list<QWidget*> parts) {
    auto* row = new QHBoxLayout;
    row->setSpacing(kSpacing);
    for (QWidget* part : parts) row->addWidget(part);
    layout.addLayout(row);
    return row;
}

}  // namespace

void frmExtEditor::createCriteria() {
    Frame1 = makeFrame("Frame1", "Criteria");
    auto* layout = new QVBoxLayout(Frame1);
    layout->setSpacing(kSpacing);
    auto* grid = new QGridLayout;
    grid->setSpacing(kSpacing);
    Label5 = makeLabel("Label5", "Ext");
    Text1 = make<QLineEdit>("Text1");
    Text1->setEnabled(false);
    Label2 = makeLabel("Label2", "&Position");
    Text2 = make<QLineEdit>("Text2");
    Text2->setText(QStringLiteral("1"));
    Label3 = makeLabel("Label3", "(0 = Anywhere)");
    Label1 = makeLabel("Label1", "&Term");
    Text3 = make<QLineEdit>("Text3");
    Label4 = makeLabel("Label4", "T&ype");
    Combo2 = make<QComboBox>("Combo2");
    Combo2->addItems({QStringLiteral("Text"), QStringLiteral("HEX")});
    const std::array<std::pair<QLabel*, QWidget*>, 4> fields = {
        {{Label5, Text1}, {Label2, Text2}, {Label1, Text3}, {Label4, Combo2}}};
    int line = 0;
    for (const auto& [label, field] : fields) {
        label->setBuddy(field);
        grid->addWidget(label, line, 0);
        grid->addWidget(field, line, 1, 1, field == Text2 ? 1 : 2);
        ++line;
    }
    grid->addWidget(Label3, 1, 2);
    grid->setColumnStretch(1, 1);
    layout->addLayout(grid);
    pageRemark_ = make<ElidedLabel>("pageRemark_");
    tellLossOnPage(*pageRemark_, {Text3});
    layout->addWidget(pageRemark_);
    Command2 = makeButton("Command2", "A&dd");
    Command11 = makeButton("Command11", "Te&st");
    makePrimary(*Command11);  // as Enter presses it
    Command3 = makeButton("Command3", "C&lr");
    addRow(*layout, {Command2, Command11, Command3});
    createPresets(*layout);
    createAdvice(*layout);
}

// Behind the keys of the criteria: by its own key, and not in the way of Tab.
void frmExtEditor::createAdvice(QVBoxLayout& layout) {
    suggest_ = makeButton("suggest_", "Su&ggest");
    suggest_->setFocusPolicy(Qt::ClickFocus);
    suggest_->setToolTip(QStringLiteral("Terms that these files share and others lack"));
    advice_ = new PolledLabel("advice_", [this] { return lookForAdvice(); });
    auto* row = new QHBoxLayout;
    row->addWidget(suggest_, 0, Qt::AlignTop);
    row->addWidget(advice_, 1);
    layout.addLayout(row);
    suggestions_ = new QMenu(QStringLiteral("Suggested terms"), this);
    suggestions_->setObjectName(QStringLiteral("suggestions_"));
}

void frmExtEditor::createPresets(QVBoxLayout& layout) {
    Command6 = makeButton("Command6", "EXE/DLL");
    Command7 = makeButton("Command7", "OLE");
    Command8 = makeButton("Command8", "WP");
    addRow(layout, {Command6, Command7, Command8});
}

void frmExtEditor::createTerms() {
    Frame3 = makeFrame("Frame3", "Existing Terms");
    auto* layout = new QVBoxLayout(Frame3);
    layout->setSpacing(kSpacing);
    iGrid1 = make<Grid>("iGrid1");
    iGrid1->setAccessibleName(QStringLiteral("Existing terms"));
    iGrid1->setColumns({{"Term", kTermWidth, false}, {"Offset", kOffsetWidth, false}, {"Type", kTypeWidth, false}});
    // Terms take the room that a wide window gives.
    iGrid1->horizontalHeader()->setStretchLastSection(false);
    iGrid1->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    iGrid1->setMinimumHeight(80);  // the least that leaves room on a screen of 540 rows
    layout->addWidget(iGrid1, 1);
    createTermButtons(*layout);
}

void frmExtEditor::createTermButtons(QVBoxLayout& layout) {
    Command12_0 = makeArrow("Command12_0", "\xE2\x96\xB2", "Move the term up");
    Command12_1 = makeArrow("Command12_1", "\xE2\x96\xBC", "Move the term down");
    Command1 = makeButton("Command1", "D&elete");
    Check1 = makeCheck("Check1", "E&nable Delete all");
    Command10 = makeButton("Command10", "Delete &All");
    Command10->setEnabled(false);
    Check2 = makeCheck("Check2", "&Update Master DB");
    Check2->setChecked(true);
    Command5 = makeButton("Command5", "D&one");
    addRow(layout, {Command12_0, Command12_1, Command1})->addStretch();
    auto* all = addRow(layout, {Check1, Command10});
    all->setStretch(0, 1);
    auto* done = addRow(layout, {Check2, Command5});
    done->setStretch(0, 1);
    for (QPushButton* button : {Command1, Command10, Command5}) button->setMinimumWidth(96);
}

void frmExtEditor::createHexView() {
    Frame2 = makeFrame("Frame2", "Hex View");
    auto* layout = new QVBoxLayout(Frame2);
    layout->setSpacing(kSpacing);
    Combo1 = make<PathBox>("Combo1");
    Combo1->view()->setTextElideMode(Qt::ElideMiddle);
    Combo1->setAccessibleName(QStringLiteral("Files"));
    Combo1->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    Combo1->setMinimumContentsLength(20);
    Combo1->setMaxVisibleItems(25);
    Command9 = makeArrow("Command9", "-", "Previous file");
    Command4 = makeArrow("Command4", "+", "Next file");
    Command9->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Left));
    Command4->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Right));
    addRow(*layout, {Combo1, Command9, Command4})->setStretch(0, 1);
    Label6 = makeLabel("Label6", "");
    shared_ = make<ElidedLabel>("shared_");
    shared_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    addRow(*layout, {Label6, shared_})->setStretch(1, 1);
    Hex1 = make<HexView>("Hex1");
    Hex1->setAccessibleName(QStringLiteral("First 512 bytes of the file"));
    takeBytes_ = new QAction(QStringLiteral("Marked Bytes to Term"), Hex1);
    takeBytes_->setObjectName(QStringLiteral("takeBytes_"));
    takeBytes_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_B));
    nextMark_ = new QAction(QStringLiteral("Select Next Shared Bytes"), Hex1);
    nextMark_->setObjectName(QStringLiteral("nextMark_"));
    nextMark_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
    nextMark_->setEnabled(false);
    Hex1->addActions({nextMark_, takeBytes_});
    Hex1->setContextMenuPolicy(Qt::ActionsContextMenu);
    consensus_ = new ConsensusLine(*Hex1);
    auto* bytes = new QVBoxLayout;
    bytes->setSpacing(0);
    bytes->addWidget(consensus_);
    bytes->addWidget(Hex1, 1);
    layout->addLayout(bytes, 1);
    createCommonRow(*layout);
}

void frmExtEditor::createCommonRow(QVBoxLayout& layout) {
    Label7 = makeLabel("Label7", "&Common header info");
    Combo3 = make<QComboBox>("Combo3");
    Combo3->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    Combo3->setMinimumContentsLength(16);
    Label7->setBuddy(Combo3);
    Command13 = makeButton("Command13", "Test");
    addRow(layout, {Label7, Combo3, Command13})->setStretch(1, 1);
    for (QWidget* part :
         {static_cast<QWidget*>(Label7), static_cast<QWidget*>(Combo3), static_cast<QWidget*>(Command13)})
        part->hide();
}

void frmExtEditor::createMenus() {
    const auto add = [](QMenu& menu, const char* name, const char* caption) {
        QAction* entry = menu.addAction(QLatin1String(caption));
        entry->setObjectName(QLatin1String(name));
        return entry;
    };
    mnuC = new QMenu(QStringLiteral("Copy Files"), this);
    mnuC->setObjectName(QStringLiteral("mnuC"));
    add(*mnuC, "mnuCopy", "Copy current file only  ...");
    add(*mnuC, "mnuCopyAll", "Copy all matching files ...");
    menuBar()->addMenu(mnuC);
    // Kept: hidden, and without effect (test CopyFilesIsNeverShown).
    mnuC->menuAction()->setVisible(false);
    menuBar()->hide();
    mnuA = new QMenu(this);
    mnuA->setObjectName(QStringLiteral("mnuA"));
    mnuAdd = add(*mnuA, "mnuAdd", "Add Term to Common Headers List");
    mnuA->addSeparator()->setObjectName(QStringLiteral("mnuB1"));
    mnuDelete = add(*mnuA, "mnuDelete", "Delete");
}

void frmExtEditor::arrange() {
    auto* left = new QWidget;
    auto* leftLayout = new QVBoxLayout(left);
    leftLayout->setContentsMargins(0, 0, 0, 0);
    leftLayout->setSpacing(kMargin);
    leftLayout->addWidget(Frame1);
    leftLayout->addWidget(Frame3, 1);
    auto* splitter = make<QSplitter>("splitter");
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(kMargin);
    splitter->addWidget(left);
    splitter->addWidget(Frame2);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({kLeftWidth, 3 * kLeftWidth});
    auto* central = new QWidget;
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->addWidget(splitter);
    setCentralWidget(central);
    busyParts_ = {Frame1, Frame2, Frame3};
}

void frmExtEditor::setTabOrders() {
    const std::array<QWidget*, 21> order = {Text2,     Text3,    Combo2,   Command2,    Command11,   Command3, Command6,
                                            Command7,  Command8, iGrid1,   Command12_0, Command12_1, Command1, Check1,
                                            Command10, Check2,   Command5, Combo1,      Command9,    Command4, Hex1};
    for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
    setTabOrder(Hex1, Combo3);
    setTabOrder(Combo3, Command13);
    Hex1->setFocus();
}

}  // namespace quillon
