// SPDX-License-Identifier: MIT
#include "editors/frmCommonHeaders.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "text/page_text.h"
#include "widgets/control_maker.h"
#include "widgets/enter_key.h"
#include "widgets/grid.h"
#include "widgets/page_remark.h"
#include "widgets/polled_label.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"

namespace quillon {

frmCommonHeaders::frmCommonHeaders(const ScreenContext& context, const ReportMessages& messages)
    : StepScreen(context, Screen::CommonHeaders, "frmCommonHeaders", "Common Headers"),
      messages_(messages),
      editor_(context.installation, context.surroundings.dialogs, context.kept) {
    createEntry();
    createList();
    arrange();
    connectControls();
    editor_.load();
    begin();
    tID->setFocus();
}

void frmCommonHeaders::createEntry() {
    Label1 = makeLabel("Label1", "&ID");
    tID = make<QLineEdit>("tID");
    Label1->setBuddy(tID);
    Label2 = makeLabel("Label2", "&Term");
    tTerm = make<QLineEdit>("tTerm");
    Label2->setBuddy(tTerm);
    Label5 = makeLabel("Label5", "&Offset");
    tOffset = make<QLineEdit>("tOffset");
    tOffset->setToolTip(QStringLiteral("1 is the first byte, 0 means anywhere in the first 512 bytes"));
    Label5->setBuddy(tOffset);
    Label6 = makeLabel("Label6", "T&ype");
    cboType = make<QComboBox>("cboType");
    cboType->addItems({QStringLiteral("Text"), QStringLiteral("Hex")});
    Label6->setBuddy(cboType);
    pageRemark_ = make<ElidedLabel>("pageRemark_");
    tellLossOnPage(*pageRemark_, {tID, tTerm});
    advice_ = new PolledLabel("advice_", [this] { return lookForAdvice(); });
    terms_.begin({context_.installation.paths().localPath, {}, {}, {}});
    Command1 = makeButton("Command1", "&Add");
    makePrimary(*Command1);
    Command1->installEventFilter(this);
    Command2 = makeButton("Command2", "&Clear");
    Label3 = makeLabel("Label3", "Right click on Update button to toggle input mode.");
    makeRemark(*Label3);
    keepRoomWhenHidden(*Label3);
    Label4 = makeLabel("Label4", "");
    makePlain(*Label4);
    Label4->setText(toQt(currentPrefix(messages_)));
}

// A common header counts whatever the extension: every good file that it meets is told.
std::optional<std::string> frmCommonHeaders::lookForAdvice() {
    const CommonHeadersEditor::Fields& fields = editor_.fields;
    AdviceQuestion question;
    question.term = {toPage(fields.offset), toPage(fields.term), PageText{fields.hexadecimal ? "H" : "T"}};
    for (const auto& row : editor_.rows()) question.rows.push_back({row.offset, row.term, row.type});
    question.ownRow = editor_.updating() ? editor_.selected() : -1;
    return terms_.look(question) ? std::optional(terms_.line()) : std::nullopt;
}

void frmCommonHeaders::createList() {
    iGrid1 = make<Grid>("iGrid1");
    iGrid1->setColumns({{"ID", 260}, {"Term", 220}, {"Pos", 60}, {"Type", 50}});
    iGrid1->setAccessibleName(QStringLiteral("Common Headers"));
    mnuMenu = new QMenu(QStringLiteral("Menu"), this);
    mnuMenu->setObjectName(QStringLiteral("mnuMenu"));
    mnuDelete = mnuMenu->addAction(QStringLiteral("Delete Selection"));
    mnuDelete->setObjectName(QStringLiteral("mnuDelete"));
    Command3 = makeButton("Command3", "&Delete Selected");
    Check1 = makeCheck("Check1", "&Enable Delete all");
    Command5 = makeButton("Command5", "De&lete All");
    Command4 = makeButton("Command4", "Do&ne");
}

void frmCommonHeaders::arrange() {
    auto* entry = new QGridLayout;
    entry->setSpacing(kSpacing);
    entry->addWidget(Label1, 0, 0);
    entry->addWidget(tID, 0, 1, 1, 5);
    entry->addWidget(Label2, 1, 0);
    entry->addWidget(tTerm, 1, 1);
    entry->addWidget(Label5, 1, 2);
    entry->addWidget(tOffset, 1, 3);
    entry->addWidget(Label6, 1, 4);
    entry->addWidget(cboType, 1, 5);
    tOffset->setFixedWidth(70);
    entry->setColumnStretch(1, 1);
    auto* enter = new QHBoxLayout;
    enter->setSpacing(kSpacing);
    enter->addWidget(Label3, 1);
    enter->addWidget(Command1);
    enter->addWidget(Command2);

    auto* below = new QHBoxLayout;
    below->setSpacing(kSpacing);
    below->addWidget(Command3);
    below->addSpacing(kMargin);
    below->addWidget(Check1);
    below->addWidget(Command5);
    below->addStretch(1);
    below->addWidget(Command4);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kSpacing);
    all->addLayout(entry);
    all->addWidget(pageRemark_);
    all->addWidget(advice_);
    all->addLayout(enter);
    all->addWidget(Label4);
    all->addWidget(iGrid1, 1);
    all->addLayout(below);
    resize(680, 600);
}

void frmCommonHeaders::connectControls() {
    using Fields = CommonHeadersEditor::Fields;
    const std::pair<QLineEdit*, std::string Fields::*> boxes[] = {
        {tID, &Fields::id}, {tTerm, &Fields::term}, {tOffset, &Fields::offset}};
    for (const auto& [box, field] : boxes) {
        hear(box, &QLineEdit::textChanged,
             [this, field = field](const QString& text) { editor_.fields.*field = fromQt(text); });
        enterPresses(*box, *Command1);
    }
    hear(cboType, &QComboBox::currentIndexChanged, [this](int index) { editor_.fields.hexadecimal = index == 1; });
    click(Command1, [this] { Command1_Click(); });
    click(Command2, [this] {
        editor_.clear();
        focus("tID");
    });
    const auto select = [this](int row) { editor_.selectRow(row); };
    step(iGrid1, &Grid::rowClicked, select);
    step(iGrid1, &Grid::currentRowChanged, select);
    step(iGrid1, &Grid::rowRightClicked, [this](int row, const QPoint& position) { openMenu(row, position); });
    connect(iGrid1, &Grid::keyPressed, this, [this](int, int key) {
        if (key == Qt::Key_Delete)
            Command3->click();
    });
    step(mnuDelete, &QAction::triggered, [this] { editor_.deleteSelected(); });
    click(Command3, [this] { editor_.deleteSelected(); });
    step(Check1, &QCheckBox::toggled, [this](bool ticked) { editor_.deleteAllEnabled = ticked; });
    click(Command5, [this] { editor_.deleteAll(); });
    click(Command4, [this] {
        passOver(editor_.save(), "no word is told for it");
        if (!editor_.isLeft())
            close();
    });
}

// The right button on Command1 changes the mode, so that a selected row can be the pattern of a new one. The menu key
// does the same.
bool frmCommonHeaders::eventFilter(QObject* watched, QEvent* event) {
    const bool rightPress =
        event->type() == QEvent::MouseButtonPress && static_cast<QMouseEvent*>(event)->button() == Qt::RightButton;
    const bool menuKey = event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Menu;
    if (watched != Command1 || !(rightPress || menuKey))
        return QWidget::eventFilter(watched, event);
    run([this] { editor_.toggleMode(); });
    return true;
}

void frmCommonHeaders::Command1_Click() {
    switch (editor_.addOrUpdate()) {
        case CommonHeadersEditor::Entered::Refused:
            beep();
            return;
        case CommonHeadersEditor::Entered::BadHexDigits:
            focus("tTerm");
            return;
        case CommonHeadersEditor::Entered::Done:
            focus("tID");
            if (editor_.selected() < 0)
                iGrid1->scrollToEnd();
            return;
    }
}

void frmCommonHeaders::openMenu(int row, const QPoint& position) {
    if (row < 0)
        return;
    editor_.selectRow(row);
    mnuDelete->setText(menuText("Delete '" + iGrid1->cell(row, 0) + "'"));
    mnuMenu->popup(position);
}

void frmCommonHeaders::showControls() {
    std::vector<GridRow> rows;
    rows.reserve(editor_.rows().size());
    for (const auto& header : editor_.rows())
        rows.push_back({{toUtf8(header.id), toUtf8(header.term), toUtf8(header.offset), toUtf8(header.type)}, {}});
    iGrid1->setRows(std::move(rows));
    showCurrentRow(*iGrid1, editor_.selected());
    showText(*tID, editor_.fields.id);
    showText(*tTerm, editor_.fields.term);
    showText(*tOffset, editor_.fields.offset);
    cboType->setCurrentIndex(editor_.fields.hexadecimal ? 1 : 0);
    Command1->setText(editor_.updating() ? QStringLiteral("&Update") : QStringLiteral("&Add"));
    Label3->setVisible(editor_.updating());
    Check1->setChecked(editor_.deleteAllEnabled);
    Command5->setEnabled(editor_.deleteAllEnabled);
}

}  // namespace quillon
