// SPDX-License-Identifier: MIT
#include "editors/frmCommonHeaders.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/control_maker.h"
#include "widgets/grid.h"
#include "widgets/navigator.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"

namespace quillon {

frmCommonHeaders::frmCommonHeaders(const ScreenContext& context, const ReportMessages& messages)
    : context_(context),
      messages_(messages),
      editor_(context.installation, context.surroundings.dialogs, context.kept) {
    setObjectName(QStringLiteral("frmCommonHeaders"));
    setWindowTitle(QStringLiteral("Common Headers"));
    createEntry();
    createList();
    arrange();
    connectControls();
    editor_.load();
    showList();
    showEntry();
    tID->setFocus();
}

void frmCommonHeaders::createEntry() {
    Label1 = makeLabel("Label1", "ID");
    tID = make<QLineEdit>("tID");
    Label1->setBuddy(tID);
    Label2 = makeLabel("Label2", "Term");
    tTerm = make<QLineEdit>("tTerm");
    Label2->setBuddy(tTerm);
    Label5 = makeLabel("Label5", "Offset");
    tOffset = make<QLineEdit>("tOffset");
    tOffset->setToolTip(QStringLiteral("1 is the first byte, 0 means anywhere in the first 512 bytes"));
    Label5->setBuddy(tOffset);
    Label6 = makeLabel("Label6", "Type");
    cboType = make<QComboBox>("cboType");
    cboType->addItems({QStringLiteral("Text"), QStringLiteral("Hex")});
    Label6->setBuddy(cboType);
    Command1 = makeButton("Command1", "Add");
    makePrimary(*Command1);
    Command1->installEventFilter(this);
    Command2 = makeButton("Command2", "Clear");
    Label3 = makeLabel("Label3", "Right click on Update button to toggle input mode.");
    makeRemark(*Label3);
    keepRoomWhenHidden(*Label3);
    Label4 = makeLabel("Label4", "");
    makePlain(*Label4);
    Label4->setText(toQt(currentPrefix(messages_)));
}

void frmCommonHeaders::createList() {
    iGrid1 = make<Grid>("iGrid1");
    iGrid1->setColumns({{"ID", 260}, {"Term", 220}, {"Pos", 60}, {"Type", 50}});
    iGrid1->setAccessibleName(QStringLiteral("Common Headers"));
    mnuMenu = new QMenu(QStringLiteral("Menu"), this);
    mnuMenu->setObjectName(QStringLiteral("mnuMenu"));
    mnuDelete = mnuMenu->addAction(QStringLiteral("Delete Selection"));
    mnuDelete->setObjectName(QStringLiteral("mnuDelete"));
    Command3 = makeButton("Command3", "Delete Selected");
    Check1 = makeCheck("Check1", "Enable Delete all");
    Command5 = makeButton("Command5", "Delete All");
    Command4 = makeButton("Command4", "Done");
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
        connect(box, &QLineEdit::textChanged, this,
                [this, field = field](const QString& text) { editor_.fields.*field = fromQt(text); });
        connect(box, &QLineEdit::returnPressed, Command1, &QPushButton::click);
    }
    connect(cboType, &QComboBox::currentIndexChanged, this,
            [this](int index) { editor_.fields.hexadecimal = index == 1; });
    connect(Command1, &QPushButton::clicked, this, &frmCommonHeaders::Command1_Click);
    connect(Command2, &QPushButton::clicked, this, &frmCommonHeaders::Command2_Click);
    connect(iGrid1, &Grid::rowClicked, this, &frmCommonHeaders::selectRow);
    connect(iGrid1, &Grid::currentRowChanged, this, &frmCommonHeaders::selectRow);
    connect(iGrid1, &Grid::rowRightClicked, this, &frmCommonHeaders::openMenu);
    connect(iGrid1, &Grid::keyPressed, this, [this](int, int key) {
        if (key == Qt::Key_Delete)
            Command3->click();
    });
    connect(mnuDelete, &QAction::triggered, this, &frmCommonHeaders::Command3_Click);
    connect(Command3, &QPushButton::clicked, this, &frmCommonHeaders::Command3_Click);
    connect(Check1, &QCheckBox::toggled, this, [this](bool ticked) {
        editor_.deleteAllEnabled = ticked;
        showEntry();
    });
    connect(Command5, &QPushButton::clicked, this, &frmCommonHeaders::Command5_Click);
    connect(Command4, &QPushButton::clicked, this, &frmCommonHeaders::Command4_Click);
}

// The right button on Command1 changes the mode, so that a selected row can be the pattern of a new one. The menu key
// does the same.
bool frmCommonHeaders::eventFilter(QObject* watched, QEvent* event) {
    const bool rightPress =
        event->type() == QEvent::MouseButtonPress && static_cast<QMouseEvent*>(event)->button() == Qt::RightButton;
    const bool menuKey = event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Menu;
    if (watched != Command1 || !(rightPress || menuKey))
        return QWidget::eventFilter(watched, event);
    editor_.toggleMode();
    showEntry();
    return true;
}

void frmCommonHeaders::Command1_Click() {
    switch (editor_.addOrUpdate()) {
        case CommonHeadersEditor::Entered::Refused:
            QApplication::beep();
            return;
        case CommonHeadersEditor::Entered::BadHexDigits:
            showEntry();
            tTerm->setFocus();
            return;
        case CommonHeadersEditor::Entered::Done:
            break;
    }
    showList();
    if (editor_.selected() < 0)
        iGrid1->scrollToEnd();
    showEntry();
    tID->setFocus();
}

void frmCommonHeaders::Command2_Click() {
    editor_.clear();
    showEntry();
    tID->setFocus();
}

void frmCommonHeaders::Command3_Click() {
    editor_.deleteSelected();
    showList();
    showEntry();
}

void frmCommonHeaders::Command4_Click() {
    passOver(editor_.save(), "the screen closes in any case, and no word is told for it");
    close();
}

void frmCommonHeaders::Command5_Click() {
    editor_.deleteAll();
    showList();
    showEntry();
}

void frmCommonHeaders::openMenu(int row, const QPoint& position) {
    if (row < 0)
        return;
    selectRow(row);
    mnuDelete->setText(menuText("Delete '" + iGrid1->cell(row, 0) + "'"));
    mnuMenu->popup(position);
}

void frmCommonHeaders::selectRow(int row) {
    editor_.selectRow(row);
    showEntry();
}

void frmCommonHeaders::showList() {
    std::vector<GridRow> rows;
    rows.reserve(editor_.rows().size());
    for (const auto& header : editor_.rows())
        rows.push_back({{toUtf8(header.id), toUtf8(header.term), toUtf8(header.offset), toUtf8(header.type)}, {}});
    showRows(*iGrid1, std::move(rows));
    showCurrentRow(*iGrid1, editor_.selected());
}

void frmCommonHeaders::showEntry() {
    showText(*tID, editor_.fields.id);
    showText(*tTerm, editor_.fields.term);
    showText(*tOffset, editor_.fields.offset);
    showChoice(*cboType, editor_.fields.hexadecimal ? 1 : 0);
    Command1->setText(editor_.updating() ? QStringLiteral("Update") : QStringLiteral("Add"));
    Label3->setVisible(editor_.updating());
    showTick(*Check1, editor_.deleteAllEnabled);
    Command5->setEnabled(editor_.deleteAllEnabled);
}

void frmCommonHeaders::closeEvent(QCloseEvent* event) {
    event->accept();
    context_.navigator.showMain();
}

}  // namespace quillon
