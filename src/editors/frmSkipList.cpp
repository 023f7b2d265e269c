// SPDX-License-Identifier: MIT
#include "editors/frmSkipList.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/control_maker.h"
#include "widgets/enter_key.h"
#include "widgets/grid.h"
#include "widgets/page_remark.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"

namespace quillon {

frmSkipList::frmSkipList(const ScreenContext& context)
    : StepScreen(context, Screen::SkipList, "frmSkipList", "Skip List"),
      editor_(context.installation, context.surroundings.dialogs, context.kept) {
    createControls();
    arrange();
    connectControls();
    editor_.load();
    begin();
    TextBox1->setFocus();
}

void frmSkipList::createControls() {
    mnu = new QMenu(QStringLiteral("&File"), this);
    mnu->setObjectName(QStringLiteral("mnu"));
    mnuLoad = mnu->addAction(QStringLiteral("Load"));
    mnuLoad->setObjectName(QStringLiteral("mnuLoad"));
    mnuLoad->setShortcut(QKeySequence::Open);
    mnuHelp = mnu->addAction(QStringLiteral("Help"));
    mnuHelp->setObjectName(QStringLiteral("mnuHelp"));
    mnuHelp->setShortcut(QKeySequence::HelpContents);

    Frame2 = makeFrame("Frame2", "Criteria");
    Label1 = makeLabel("Label1", "&Term");
    TextBox1 = make<QLineEdit>("TextBox1");
    TextBox1->setToolTip(QStringLiteral("Text of a path, with * ? # or [a-z] where it may differ"));
    Label1->setBuddy(TextBox1);
    pageRemark_ = make<ElidedLabel>("pageRemark_");
    tellLossOnPage(*pageRemark_, {TextBox1});
    Command1 = makeButton("Command1", "&Add");
    Command3 = makeButton("Command3", "&Clear");
    makePrimary(*Command1);

    Frame1 = makeFrame("Frame1", "Current Terms");
    iGrid1 = make<Grid>("iGrid1");
    iGrid1->setColumns({{"Term", 250}});
    iGrid1->setAccessibleName(QStringLiteral("Current Terms"));
    Command2 = makeButton("Command2", "&Delete");
    Command4 = makeButton("Command4", "D&one");
}

void frmSkipList::arrange() {
    auto* criteria = new QVBoxLayout(Frame2);
    auto* entry = new QHBoxLayout;
    entry->setSpacing(kSpacing);
    entry->addWidget(Label1);
    entry->addWidget(TextBox1, 1);
    entry->addWidget(Command1);
    entry->addWidget(Command3);
    criteria->addLayout(entry);
    criteria->addWidget(pageRemark_);

    auto* list = new QVBoxLayout(Frame1);
    list->setSpacing(kSpacing);
    list->addWidget(iGrid1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(Command2);
    buttons->addStretch(1);
    list->addLayout(buttons);

    auto* bar = new QMenuBar(this);
    bar->addMenu(mnu);
    auto* all = new QVBoxLayout(this);
    all->setMenuBar(bar);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kSpacing);
    all->addWidget(Frame2);
    all->addWidget(Frame1, 1);
    all->addWidget(Command4, 0, Qt::AlignRight);
    resize(520, 560);
}

void frmSkipList::connectControls() {
    step(mnuLoad, &QAction::triggered, [this] {
        if (!editor_.loadFromFile())
            beep();
    });
    connect(mnuHelp, &QAction::triggered, this, [this] { context_.navigator.open(Screen::Help); });
    hear(TextBox1, &QLineEdit::textChanged, [this](const QString& text) { editor_.entry = fromQt(text); });
    enterPresses(*TextBox1, *Command1);
    click(Command1, [this] {
        editor_.addOrUpdate();
        focus("TextBox1");
    });
    click(Command3, [this] {
        editor_.clear();
        focus("TextBox1");
    });
    const auto select = [this](int row) { editor_.selectRow(row); };
    step(iGrid1, &Grid::rowClicked, select);
    step(iGrid1, &Grid::currentRowChanged, select);
    connect(iGrid1, &Grid::keyPressed, this, [this](int, int key) {
        if (key == Qt::Key_Delete)
            Command2->click();
    });
    click(Command2, [this] { editor_.deleteSelected(); });
    connect(Command4, &QPushButton::clicked, this, &QWidget::close);
    closeOnEscape();
}

void frmSkipList::showControls() {
    std::vector<GridRow> rows;
    rows.reserve(editor_.terms().size());
    for (const auto& term : editor_.terms()) rows.push_back({{toUtf8(term)}, {}});
    iGrid1->setRows(std::move(rows));
    showCurrentRow(*iGrid1, editor_.selected());
    showText(*TextBox1, editor_.entry);
    Command1->setText(editor_.updating() ? QStringLiteral("&Update") : QStringLiteral("&Add"));
}

// What could not be saved at its moment is saved now.
void frmSkipList::leaveOrAsk() {
    if (editor_.saveToClose())
        StepScreen::leaveOrAsk();
}

}  // namespace quillon
