// SPDX-License-Identifier: MIT
// What the controls do. How they are made and stand together is in frmExtEditor_controls.cpp.
#include "editors/frmExtEditor.h"

#include <algorithm>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

#include "editors/frmExtEditor_consensus.h"
#include "text/list_text.h"
#include "text/page_text.h"
#include "text/unicode.h"
#include "widgets/enter_key.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"
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
    : StepWindow(context, Screen::ExtEditor, "frmExtEditor", "Extension Editor"),
      editor_(context.installation, context.surroundings.dialogs, context.kept, messages, *this,
              [] { QApplication::clipboard()->clear(); }),
      whenDone_(handover.whenDone) {
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
    connectAdvice(handover);
    begin();
    // As high as the hex view with all its lines asks for.
    resize(std::max(1180, sizeHint().width()), std::max(720, sizeHint().height()));
}

void frmExtEditor::act(QPushButton* button, void (ExtensionEditor::*operation)()) {
    click(button, [this, operation] { (editor_.*operation)(); });
}

void frmExtEditor::connectCriteria() {
    step(Text2, &QLineEdit::textChanged, [this](const QString& text) { editor_.positionChanged(fromQt(text)); });
    step(Text3, &QLineEdit::textChanged, [this](const QString& text) { Text3_Change(text); });
    hear(Combo2, &QComboBox::currentIndexChanged, [this](int type) { editor_.state.type = type; });
    // "Test", not "Add": a term is tried before it is kept.
    for (QLineEdit* box : {Text2, Text3}) enterPresses(*box, *Command11);
    act(Command2, &ExtensionEditor::addOrUpdate);
    act(Command3, &ExtensionEditor::clear);
    act(Command11, &ExtensionEditor::search);
    act(Command6, &ExtensionEditor::presetExe);
    act(Command7, &ExtensionEditor::presetOle);
    act(Command8, &ExtensionEditor::presetWp);
}

void frmExtEditor::connectTerms() {
    step(iGrid1, &Grid::currentRowChanged, [this](int row) { editor_.selectRow(row); });
    connect(iGrid1, &Grid::keyPressed, this, [this](int /*row*/, int key) {
        if (key == Qt::Key_Delete)
            Command1->click();
    });
    step(iGrid1, &Grid::rowClicked, [this](int row) { iGrid1_Mouse(row); });
    step(iGrid1, &Grid::rowRightClicked, [this](int row, const QPoint& place) {
        iGrid1_Mouse(row);
        if (row >= 0)
            mnuA->popup(place);
    });
    act(Command12_0, &ExtensionEditor::moveUp);
    act(Command12_1, &ExtensionEditor::moveDown);
    act(Command1, &ExtensionEditor::deleteRow);
    step(Check1, &QCheckBox::toggled, [this](bool ticked) { editor_.state.deleteAllTicked = ticked; });
    act(Command10, &ExtensionEditor::deleteAllRows);
    // Kept: Check2 "Update Master DB" has no effect (test UpdateMasterDbHasNoEffect).
    connect(Command5, &QPushButton::clicked, this, [this] {
        QApplication::clipboard()->clear();
        close();
    });
    step(mnuAdd, &QAction::triggered, [this] { editor_.popupAddCommon(); });
    step(mnuDelete, &QAction::triggered, [this] { editor_.popupDelete(); });
}

void frmExtEditor::connectFiles() {
    step(Combo1, &QComboBox::currentIndexChanged, [this](int file) { editor_.chooseFile(file); });
    act(Command9, &ExtensionEditor::previousFile);
    act(Command4, &ExtensionEditor::nextFile);
    // Of selected bytes the term begins at the first, whichever end the caret is at.
    step(Hex1, &HexView::caretMoved, [this] { editor_.caretMoved(Hex1->selection().first); });
    hear(Combo3, &QComboBox::currentIndexChanged, [this](int identifier) { editor_.state.identifier = identifier; });
    act(Command13, &ExtensionEditor::testCommon);
}

void frmExtEditor::connectAdvice(const EditorHandover& handover) {
    const BenchWish wish{context_.installation.paths().localPath, utf16ToUtf8(lowered(handover.extension)),
                         handover.job, editor_.state.files};
    terms_.begin(wish);
    const bool several = wish.files.size() > 1;  // one file has nothing to be compared with
    consensus_->setVisible(several);
    if (several)
        listed_.begin(wish);
    connect(suggest_, &QPushButton::clicked, this, [this] {
        terms_.askForTerms();
        suggest_->setEnabled(false);
    });
    step(takeBytes_, &QAction::triggered, [this] {
        editor_.takeBytes(Hex1->selection().first, Hex1->selectedBytes());
        Command11->setFocus();
    });
    step(nextMark_, &QAction::triggered, [this] {
        consensus_->selectNextMark();
        Hex1->setFocus();
    });
}

void frmExtEditor::showConsensus(HeadConsensus consensus) {
    shared_->setText(toQt(consensusText(consensus)));
    nextMark_->setEnabled(nextMark(consensus, -1).has_value());
    consensus_->setConsensus(std::move(consensus));
}

AdviceQuestion frmExtEditor::adviceQuestion() const {
    const ExtensionEditorState& state = editor_.state;
    const PageText type{state.type == kHexType ? "H" : "T"};
    return {{toPage(state.position), toPage(state.term), type},
            state.rows,
            state.updating ? state.currentRow : -1,
            utf16ToUtf8(lowered(state.extension))};
}

std::optional<std::string> frmExtEditor::lookForAdvice() {
    if (auto found = listed_.take())
        showConsensus(std::move(*found));
    const bool changed = terms_.look(adviceQuestion());
    if (const auto offered = terms_.takeTerms()) {
        suggest_->setEnabled(true);
        openSuggestions(*offered);
    }
    return changed ? std::optional(terms_.line()) : std::nullopt;
}

// One click, or the key of its number, fills the criteria; "Add" and "Test" are as told.
void frmExtEditor::openSuggestions(const std::vector<OfferedTerm>& offered) {
    suggestions_->clear();
    for (std::size_t i = 0; i < offered.size(); ++i) {
        const QString number = QString::number((i + 1) % 10);
        QAction* entry =
            suggestions_->addAction(QStringLiteral("&%1   ").arg(number) + menuText(offerText(offered[i])));
        entry->setObjectName(QStringLiteral("suggestion_%1").arg(i));
        step(entry, &QAction::triggered, [this, term = offered[i].term] {
            editor_.takeSuggestion(term);
            Command11->setFocus();
        });
    }
    if (offered.empty()) {
        QAction* none = suggestions_->addAction(QStringLiteral("These files share nothing that others lack"));
        none->setObjectName(QStringLiteral("noSuggestion_"));
        none->setEnabled(false);
    }
    suggestions_->popup(suggest_->mapToGlobal(QPoint(0, suggest_->height())));
}

void frmExtEditor::iGrid1_Mouse(int row) {
    if (row < 0)
        return;
    editor_.hitRow(row);
    mnuAdd->setText(menuText(editor_.addCommonCaption()));
}

void frmExtEditor::Text3_Change(const QString& text) {
    editor_.termChanged(fromQt(text));
    if (editor_.state.term == fromQt(text))
        return;
    // The person goes on where the comma was.
    const int place = Text3->cursorPosition();
    showState();
    Text3->setCursorPosition(place - static_cast<int>(text.left(place).count(QLatin1Char(','))));
}

void frmExtEditor::leaveOrAsk() {
    if (!editor_.saveToClose())
        return;
    markUnloaded();
    context_.navigator.open(Screen::ViewList);
    if (whenDone_)
        whenDone_();
    leave();
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
        Hex1->setBytesInPlace(state.head);
    }
    for (QWidget* part :
         {static_cast<QWidget*>(Label7), static_cast<QWidget*>(Combo3), static_cast<QWidget*>(Command13)})
        part->setVisible(state.commonShown);
    Combo3->setCurrentIndex(state.identifier);
}

void frmExtEditor::showControls() {
    showCriteria();
    showTerms();
    showFile();
    busyParts_.setEnabled(editor_.state.framesEnabled);
    showPointer(*this, editor_.state.busyPointer);
}

}  // namespace quillon
