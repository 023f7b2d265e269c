// SPDX-License-Identifier: MIT
// What the controls do. How they are made and stand together is in frmExtEditor_controls.cpp.
#include "editors/frmExtEditor.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

#include "text/list_text.h"
#include "text/page_text.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"
#include "widgets/navigator.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"

namespace quillon {

std::string TermGridRows::cell(int row, int column) const {
    if (row < 0 || row >= rowCount())
        return {};
    const HeaderTerm& term = rows_[static_cast<std::size_t>(row)];
    return toUtf8(column == 0 ? term.term : column == 1 ? term.offset : term.type);
}

int FileNames::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(files_.size());
}

QVariant FileNames::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    QString name = toQt(readable(std::u16string_view(files_[static_cast<std::size_t>(index.row())])));
    // A tool tip takes what looks like mark-up for mark-up.
    return role == Qt::ToolTipRole ? name.toHtmlEscaped() : name;
}

frmExtEditor::frmExtEditor(const ScreenContext& context, const ReportMessages& messages, const EditorHandover& handover)
    : context_(context),
      editor_(context.installation, context.surroundings.dialogs, context.kept, messages, *this),
      whenDone_(handover.whenDone) {
    setObjectName(QStringLiteral("frmExtEditor"));
    setWindowTitle(QStringLiteral("Extension Editor"));
    createCriteria();
    createTerms();
    createHexView();
    createMenus();
    arrange();
    setTabOrders();
    editor_.load(handover);
    iGrid1->rows().setSource(&gridRows_);
    shownRows_ = editor_.state.rows;
    Combo1->setModel(new FileNames(editor_.state.files, this));
    for (const auto& identifier : editor_.state.identifiers) Combo3->addItem(toQt(std::u16string_view(identifier)));
    connectCriteria();
    connectTerms();
    connectFiles();
    showState();
}

void frmExtEditor::act(QPushButton* button, void (ExtensionEditor::*operation)()) {
    connect(button, &QPushButton::clicked, this, [this, operation] {
        (editor_.*operation)();
        showState();
    });
}

void frmExtEditor::connectCriteria() {
    connect(Text2, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (showing_)
            return;
        editor_.positionChanged(fromQt(text));
        showState();
    });
    connect(Text3, &QLineEdit::textChanged, this, &frmExtEditor::Text3_Change);
    connect(Combo2, &QComboBox::currentIndexChanged, this, [this](int type) {
        if (!showing_)
            editor_.state.type = type;
    });
    for (QLineEdit* box : {Text2, Text3}) connect(box, &QLineEdit::returnPressed, Command2, &QPushButton::click);
    act(Command2, &ExtensionEditor::addOrUpdate);
    act(Command3, &ExtensionEditor::clear);
    act(Command11, &ExtensionEditor::search);
    act(Command6, &ExtensionEditor::presetExe);
    act(Command7, &ExtensionEditor::presetOle);
    act(Command8, &ExtensionEditor::presetWp);
}

void frmExtEditor::connectTerms() {
    connect(iGrid1, &Grid::currentRowChanged, this, [this](int row) {
        if (showing_)
            return;
        editor_.selectRow(row);
        showState();
    });
    connect(iGrid1, &Grid::keyPressed, this, [this](int /*row*/, int key) {
        if (key == Qt::Key_Delete)
            Command1->click();
    });
    connect(iGrid1, &Grid::rowClicked, this, &frmExtEditor::iGrid1_Mouse);
    connect(iGrid1, &Grid::rowRightClicked, this, &frmExtEditor::iGrid1_RightClick);
    act(Command12_0, &ExtensionEditor::moveUp);
    act(Command12_1, &ExtensionEditor::moveDown);
    act(Command1, &ExtensionEditor::deleteRow);
    connect(Check1, &QCheckBox::toggled, this, [this](bool ticked) {
        editor_.state.deleteAllTicked = ticked;
        showState();
    });
    act(Command10, &ExtensionEditor::deleteAllRows);
    // Kept: Check2 "Update Master DB" has no effect (test UpdateMasterDbHasNoEffect).
    connect(Command5, &QPushButton::clicked, this, [this] {
        clearClipboard();
        leave();
    });
    connect(mnuAdd, &QAction::triggered, this, [this] {
        editor_.popupAddCommon();
        showState();
    });
    connect(mnuDelete, &QAction::triggered, this, [this] {
        editor_.popupDelete();
        showState();
    });
}

void frmExtEditor::connectFiles() {
    connect(Combo1, &QComboBox::currentIndexChanged, this, [this](int file) {
        if (showing_)
            return;
        editor_.chooseFile(file);
        showState();
    });
    act(Command9, &ExtensionEditor::previousFile);
    act(Command4, &ExtensionEditor::nextFile);
    connect(Hex1, &HexView::caretMoved, this, [this](int byte) {
        editor_.caretMoved(byte);
        showState();
    });
    connect(Combo3, &QComboBox::currentIndexChanged, this, [this](int identifier) {
        if (!showing_)
            editor_.state.identifier = identifier;
    });
    act(Command13, &ExtensionEditor::testCommon);
}

void frmExtEditor::iGrid1_Mouse(int row) {
    if (row < 0)
        return;
    editor_.hitRow(row);
    mnuAdd->setText(menuText(editor_.addCommonCaption()));
    showState();
}

void frmExtEditor::iGrid1_RightClick(int row, const QPoint& place) {
    iGrid1_Mouse(row);
    if (row >= 0)
        mnuA->popup(place);
}

void frmExtEditor::Text3_Change(const QString& text) {
    if (showing_)
        return;
    editor_.termChanged(fromQt(text));
    if (editor_.state.term == fromQt(text))
        return;
    // The person goes on where the comma was.
    const int place = Text3->cursorPosition();
    showState();
    Text3->setCursorPosition(place - static_cast<int>(text.left(place).count(QLatin1Char(','))));
}

// Done
void frmExtEditor::leave() {
    if (left_)
        return;
    left_ = true;
    editor_.save();
    context_.navigator.open(Screen::ViewList);
    if (whenDone_)
        whenDone_();
    context_.navigator.unload(Screen::ExtEditor);
}

void frmExtEditor::closeEvent(QCloseEvent* event) {
    leave();
    event->accept();
}

void frmExtEditor::clearClipboard() {
    QApplication::clipboard()->clear();
}

void frmExtEditor::beep() {
    QApplication::beep();
}

void frmExtEditor::focusPosition() {
    Text2->setFocus();
}

void frmExtEditor::focusTerm() {
    Text3->setFocus();
}

void frmExtEditor::showCriteria() {
    const ExtensionEditorState& state = editor_.state;
    const auto show = [](QLineEdit& box, const QString& text) {
        if (box.text() != text)
            box.setText(text);
    };
    show(*Text1, toQt(readable(std::u16string_view(state.extension))));
    show(*Text2, toQt(state.position));
    show(*Text3, toQt(state.term));
    Combo2->setCurrentIndex(state.type);
    Command2->setText(state.updating ? QStringLiteral("Up&date") : QStringLiteral("A&dd"));
}

void frmExtEditor::showTerms() {
    const ExtensionEditorState& state = editor_.state;
    if (shownRows_ != state.rows) {
        const bool grew = state.rows.size() > shownRows_.size();
        shownRows_ = state.rows;
        iGrid1->showOtherRows(iGrid1->topRow(), state.currentRow);
        if (grew)
            iGrid1->scrollToEnd();
    }
    if (iGrid1->currentRow() != state.currentRow)
        iGrid1->setCurrentRow(state.currentRow);
    Command12_0->setEnabled(state.upEnabled);
    Command12_1->setEnabled(state.downEnabled);
    Check1->setChecked(state.deleteAllTicked);
    Command10->setEnabled(state.deleteAllTicked);
}

void frmExtEditor::showFile() {
    const ExtensionEditorState& state = editor_.state;
    Combo1->setCurrentIndex(state.currentFile);
    Combo1->setToolTip(Combo1->currentText().toHtmlEscaped());
    Label6->setText(toQt(state.viewing));
    if (shownFile_ != state.currentFile || Hex1->bytes() != state.head) {
        shownFile_ = state.currentFile;
        Hex1->setBytes(state.head);
    }
    for (QWidget* part :
         {static_cast<QWidget*>(Label7), static_cast<QWidget*>(Combo3), static_cast<QWidget*>(Command13)})
        part->setVisible(state.commonShown);
    Combo3->setCurrentIndex(state.identifier);
}

void frmExtEditor::showState() {
    if (showing_)
        return;
    showing_ = true;
    showCriteria();
    showTerms();
    showFile();
    busyParts_.setEnabled(editor_.state.framesEnabled);
    showPointer(*this, editor_.state.busyPointer);
    showing_ = false;
}

}  // namespace quillon
