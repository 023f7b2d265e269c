// SPDX-License-Identifier: MIT
#include "editors/frmUpdatedb.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "text/page_text.h"
#include "text/unicode.h"
#include "widgets/control_maker.h"
#include "widgets/enter_key.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"
#include "widgets/page_remark.h"
#include "widgets/polled_label.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"

namespace quillon {

frmUpdatedb::frmUpdatedb(const ScreenContext& context)
    : StepScreen(context, Screen::Updatedb, "frmUpdatedb", "Manually Update Database"),
      editor_(context.installation, context.surroundings.dialogs, context.kept) {
    createMenus();
    createCriteria();
    createTerms();
    arrangeCriteria();
    arrange();
    connectControls();
    editor_.load();
    begin();
    Text1->setFocus();
}

void frmUpdatedb::createMenus() {
    mnuFle = new QMenu(QStringLiteral("&File"), this);
    mnuFle->setObjectName(QStringLiteral("mnuFle"));
    mnuOpen = mnuFle->addAction(QStringLiteral("Open"));
    mnuOpen->setObjectName(QStringLiteral("mnuOpen"));
    mnuOpen->setShortcut(QKeySequence::Open);
    mnuEdit = new QMenu(QStringLiteral("Edit"), this);
    mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    mnuDelete = mnuEdit->addAction(QStringLiteral("Delete"));
    mnuDelete->setObjectName(QStringLiteral("mnuDelete"));
    mnub1 = mnuEdit->addSeparator();
    mnub1->setObjectName(QStringLiteral("mnub1"));
    // Kept: this entry does nothing (test AddToCommonHeadersDoesNothing).
    mnuCommonHeader = mnuEdit->addAction(QStringLiteral("Add to Common Headers"));
    mnuCommonHeader->setObjectName(QStringLiteral("mnuCommonHeader"));
}

void frmUpdatedb::createCriteria() {
    Frame2 = makeFrame("Frame2", "Criteria");
    Label5 = makeLabel("Label5", "E&xt");
    Text1 = make<QLineEdit>("Text1");
    Label5->setBuddy(Text1);
    Command4 = makeButton("Command4", "...");
    Command4->setAccessibleName(QStringLiteral("Open a file to view headers"));
    Command4->setToolTip(QStringLiteral("Open a file to view headers"));
    Label6 = makeLabel("Label6", "Type extension or open file");
    makeRemark(*Label6);
    Label2 = makeLabel("Label2", "&Position");
    Text2 = make<QLineEdit>("Text2");
    Label2->setBuddy(Text2);
    Label3 = makeLabel("Label3", "(0 = Anywhere)");
    makeRemark(*Label3);
    Label1 = makeLabel("Label1", "&Term");
    Text3 = make<QLineEdit>("Text3");
    Label1->setBuddy(Text3);
    pageRemark_ = make<ElidedLabel>("pageRemark_");
    tellLossOnPage(*pageRemark_, {Text3});
    Label4 = makeLabel("Label4", "T&ype");
    Combo1 = make<QComboBox>("Combo1");
    Combo1->addItems({QStringLiteral("Text"), QStringLiteral("HEX")});
    Label4->setBuddy(Combo1);
    Command2 = makeButton("Command2", "&Add");
    makePrimary(*Command2);
    Command3 = makeButton("Command3", "C&lr");
    advice_ = new PolledLabel("advice_", [this] { return lookForAdvice(); });
    terms_.begin({context_.installation.paths().localPath, {}, {}, {}});
}

std::optional<std::string> frmUpdatedb::lookForAdvice() {
    const ManualUpdate::Fields& fields = editor_.fields;
    const HeaderTerm term{toPage(fields.position), toPage(fields.term), PageText{fields.hexadecimal ? "H" : "T"}};
    const bool changed = terms_.look({term, editor_.rows(), editor_.updating() ? editor_.current() : -1,
                                      utf16ToUtf8(lowered(utf8ToUtf16(editor_.extension())))});
    return changed ? std::optional(terms_.line()) : std::nullopt;
}

void frmUpdatedb::createTerms() {
    Frame3 = makeFrame("Frame3", "Existing Terms");
    iGrid1 = make<Grid>("iGrid1");
    iGrid1->setColumns({{"Term", 140}, {"Offset", 80}, {"Type", 40}});
    iGrid1->setAccessibleName(QStringLiteral("Existing Terms"));
    Command1 = makeButton("Command1", "&Delete");
    Check1 = makeCheck("Check1", "Delete all ter&ms");
    Command5 = makeButton("Command5", "D&one");
    Frame1 = makeFrame("Frame1", "Hex View");
    Hex1 = make<HexView>("Hex1");
    Hex1->setAccessibleName(QStringLiteral("Hex View"));
}

void frmUpdatedb::arrangeCriteria() {
    Command4->setFixedWidth(40);
    auto* grid = new QGridLayout(Frame2);
    grid->setSpacing(kSpacing);
    grid->addWidget(Label5, 0, 0);
    grid->addWidget(Text1, 0, 1);
    grid->addWidget(Command4, 0, 2, Qt::AlignLeft);
    grid->addWidget(Label6, 1, 1, 1, 2);
    grid->addWidget(Label2, 2, 0);
    grid->addWidget(Text2, 2, 1);
    grid->addWidget(Label3, 2, 2);
    grid->addWidget(Label1, 3, 0);
    grid->addWidget(Text3, 3, 1, 1, 2);
    grid->addWidget(pageRemark_, 4, 1, 1, 2);
    grid->addWidget(Label4, 5, 0);
    grid->addWidget(Combo1, 5, 1);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(kSpacing);
    buttons->addWidget(Command2, 1);
    buttons->addWidget(Command3, 1);
    grid->addLayout(buttons, 6, 1, 1, 2);
    grid->addWidget(advice_, 7, 0, 1, 3);
    grid->setColumnStretch(1, 1);
}

void frmUpdatedb::arrange() {
    auto* terms = new QVBoxLayout(Frame3);
    terms->setSpacing(kSpacing);
    terms->addWidget(iGrid1, 1);
    auto* below = new QHBoxLayout;
    below->setSpacing(kSpacing);
    below->addWidget(Command1);
    below->addWidget(Check1);
    below->addStretch(1);
    below->addWidget(Command5);
    terms->addLayout(below);
    (new QVBoxLayout(Frame1))->addWidget(Hex1);

    auto* left = new QVBoxLayout;
    left->setSpacing(kSpacing);
    left->addWidget(Frame2);
    left->addWidget(Frame3, 1);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(kMargin);
    columns->addLayout(left, 1);
    columns->addWidget(Frame1, 2);
    auto* bar = new QMenuBar(this);
    bar->addMenu(mnuFle);
    auto* all = new QVBoxLayout(this);
    all->setMenuBar(bar);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->addLayout(columns);
    // As wide and as high as the hex view with all its lines asks for.
    resize(sizeHint());
}

void frmUpdatedb::connectControls() {
    step(mnuOpen, &QAction::triggered, [this] { mnuOpen_Click(); });
    step(mnuDelete, &QAction::triggered, [this] { editor_.deleteTerms(); });
    step(Text1, &QLineEdit::textChanged, [this](const QString& text) { editor_.setExtension(fromQt(text)); });
    click(Command4, [this] { mnuOpen_Click(); });
    hear(Text2, &QLineEdit::textChanged, [this](const QString& text) { editor_.fields.position = fromQt(text); });
    hear(Text3, &QLineEdit::textChanged, [this](const QString& text) { editor_.fields.term = fromQt(text); });
    for (QLineEdit* box : {Text2, Text3}) enterPresses(*box, *Command2);
    step(Combo1, &QComboBox::currentIndexChanged, [this](int index) { editor_.chooseType(index == 1); });
    click(Command2, [this] { Command2_Click(); });
    click(Command3, [this] { editor_.clear(); });
    const auto select = [this](int row) { editor_.selectRow(row); };
    step(iGrid1, &Grid::rowClicked, select);
    step(iGrid1, &Grid::currentRowChanged, select);
    step(iGrid1, &Grid::rowRightClicked, [this](int row, const QPoint& position) { openMenu(row, position); });
    connect(iGrid1, &Grid::keyPressed, this, [this](int, int key) {
        if (key == Qt::Key_Delete)
            Command1->click();
    });
    click(Command1, [this] { editor_.deleteTerms(); });
    hear(Check1, &QCheckBox::toggled, [this](bool ticked) { editor_.deleteAllTerms = ticked; });
    connect(Command5, &QPushButton::clicked, this, &QWidget::close);
}

void frmUpdatedb::mnuOpen_Click() {
    switch (editor_.openSample()) {
        case ManualUpdate::Opened::Nothing:
            break;
        case ManualUpdate::Opened::Failed:
            beep();
            break;
        case ManualUpdate::Opened::Shown:
            Hex1->setBytes(editor_.sample());
            break;
    }
}

void frmUpdatedb::Command2_Click() {
    switch (editor_.addOrUpdate()) {
        case ManualUpdate::Focus::Extension:
            focus("Text1");
            break;
        case ManualUpdate::Focus::Position:
            focus("Text2");
            break;
        case ManualUpdate::Focus::Term:
            focus("Text3");
            break;
        case ManualUpdate::Focus::Stays:
            break;
    }
}

void frmUpdatedb::openMenu(int row, const QPoint& position) {
    if (row < 0)
        return;
    editor_.selectRow(row);
    mnuDelete->setText(menuText(editor_.deleteCaption()));
    mnuCommonHeader->setText(menuText(editor_.commonHeaderCaption()));
    mnuEdit->popup(position);
}

void frmUpdatedb::showControls() {
    showText(*Text1, editor_.extension());
    std::vector<GridRow> rows;
    rows.reserve(editor_.rows().size());
    for (const auto& term : editor_.rows())
        rows.push_back({{toUtf8(term.term), toUtf8(term.offset), toUtf8(term.type)}, {}});
    iGrid1->setRows(std::move(rows));
    showCurrentRow(*iGrid1, editor_.current());
    showText(*Text2, editor_.fields.position);
    showText(*Text3, editor_.fields.term);
    Combo1->setCurrentIndex(editor_.fields.hexadecimal ? 1 : 0);
    Command2->setText(editor_.updating() ? QStringLiteral("&Update") : QStringLiteral("&Add"));
}

// Every way out saves; whoever does not want to wait for it stays, or closes without it.
void frmUpdatedb::leaveOrAsk() {
    if (editor_.saveToClose())
        StepScreen::leaveOrAsk();
}

}  // namespace quillon
