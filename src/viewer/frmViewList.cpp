// SPDX-License-Identifier: MIT
// What the controls do. How they are made and stand together is in frmViewList_controls.cpp.
#include "viewer/frmViewList.h"

#include <algorithm>
#include <utility>

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>

#include "text/list_text.h"
#include "text/unicode.h"
#include "widgets/enter_key.h"
#include "widgets/grid.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"

namespace quillon {

namespace {

constexpr int kToldColumns = 3;

}  // namespace

std::string ViewGridRows::cell(int row, int column) const {
    const ViewRows& rows = viewer_.state.rows;
    if (row < 0 || row >= rows.shown())
        return {};
    const ViewRows::Id id = rows.idAt(row);
    if (column == 0)
        return readable(rows.path(id));
    if (column >= kToldColumns)
        return viewer_.ownCell(id, static_cast<std::size_t>(column - kToldColumns));
    return readable(column == 1 ? rows.extension(id) : rows.problem(id));
}

frmViewList::frmViewList(const ScreenContext& context, const ViewedJob& job, const ViewerHandover* files)
    : StepScreen(context, Screen::ViewList, "frmViewList", "View File List"), viewer_(job, *this) {
    createCategory();
    createRows();
    createEditor();
    arrange();
    setTabOrders();
    viewer_.load();
    fillFixedLists();
    iGrid1->rows().setSource(&gridRows_);
    connectControls();
    begin();
    if (files != nullptr)
        beginWith(*files);
}

void frmViewList::connectControls() {
    step(Combo1, &QComboBox::currentIndexChanged, [this](int entry) { viewer_.chooseCategory(entry); });
    click(Command2, [this] { viewer_.filter(); });
    hear(Text1, &QLineEdit::textChanged, [this](const QString& text) { viewer_.state.maxFiles = fromQt(text); });
    enterPresses(*Text1, *Command2);
    // Kept: Text2 "Start From" and Check1 "Use Ignore List" have no effect (test
    // StartFromAndUseIgnoreListHaveNoEffect).
    connectGrid();
    step(mnuAddSkip, &QAction::triggered, [this] { viewer_.addToSkipList(); });
    step(Combo2, &QComboBox::currentIndexChanged, [this](int entry) { viewer_.selectExtension(entry); });
    // The entry that is chosen already may be chosen again, to have its files counted again.
    step(Combo2, &QComboBox::activated, [this](int entry) { viewer_.selectExtension(entry); });
    click(Command3, [this] { Command3_Click(); });
    click(Command4, [this] { viewer_.retest(); });
    click(regradeKept_, [this] { viewer_.regradeKept(); });
    // Kept: Command5 and Command6 have no effect and are never shown (test MarkAndSkipRetestAreNotShown).
    click(openOverview, [this] { goToOverview(); });
    click(copyThese_, [this] { context_.navigator.openModal(Screen::Copies, viewer_.forCopies()); });
    click(Command1, [this] { Command1_Click(); });
    // What is off, as during a retest, is not pressed by Escape either.
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, Command1, &QPushButton::click);
}

void frmViewList::connectGrid() {
    step(iGrid1, &Grid::currentRowChanged, [this](int row) { viewer_.selectRow(row); });
    step(iGrid1, &Grid::keyPressed, [this](int row, int key) {
        if (key == Qt::Key_Up || key == Qt::Key_Down)
            viewer_.selectRow(row);
    });
    connect(iGrid1, &Grid::rowRightClicked, this, [this](int row, const QPoint& place) {
        if (row >= 0)
            mnuMnu->popup(place);
    });
    hear(iGrid1->verticalScrollBar(), &QScrollBar::valueChanged, [this](int topRow) { viewer_.state.topRow = topRow; });
}

// Run
void frmViewList::Command3_Click() {
    auto handover = viewer_.openEditor();
    if (!handover)
        return;
    handover->whenDone = [screen = QPointer<frmViewList>(this)] {
        if (screen)
            screen->Command4->setEnabled(true);
    };
    context_.navigator.open(Screen::ExtEditor, std::move(*handover));
    context_.navigator.hide(Screen::ViewList);
}

// As a person would: category, filter, extension.
void frmViewList::beginWith(const ViewerHandover& files) {
    Combo1->setCurrentIndex(viewer_.categoryOf(files.grade));
    Command2->click();
    const auto& entries = viewer_.state.extensions.entries();
    const auto found = std::ranges::find(entries, utf8ToUtf16(files.extension));
    if (!files.extension.empty() && found != entries.end())
        Combo2->setCurrentIndex(static_cast<int>(found - entries.begin()));
}

void frmViewList::goToOverview() {
    context_.navigator.open(Screen::Overview, OverviewHandover{viewer_.jobId(), [&navigator = context_.navigator] {
                                                                   navigator.open(Screen::ViewList);
                                                               }});
    context_.navigator.hide(Screen::ViewList);
}

// Done
void frmViewList::Command1_Click() {
    Navigator& navigator = context_.navigator;
    MainWindowDoor* main = navigator.main();
    navigator.hide(Screen::ViewList);
    if (main != nullptr) {
        main->showMain();
        if (viewer_.state.changed) {
            viewer_.goBusy();
            main->upDateAllLabels();
            viewer_.goIdle();
        }
        main->showMain();
    }
    leave();
}

void frmViewList::closeEvent(QCloseEvent* event) {
    if (viewer_.state.passRunning)
        event->ignore();
    else
        StepScreen::closeEvent(event);
}

void frmViewList::fillFixedLists() {
    for (const auto& category : viewer_.state.categories) Combo1->addItem(toQt(std::u16string_view(category)));
    for (const auto& mark : viewer_.state.marks) Combo3->addItem(toQt(std::u16string_view(mark)));
    Combo1->setCurrentIndex(0);
    Combo3->setCurrentIndex(0);
}

void frmViewList::showRows() {
    viewer_.settleRows();
    if (shownContents_ != viewer_.state.contents) {
        shownContents_ = viewer_.state.contents;
        iGrid1->showOtherRows(viewer_.state.topRow, viewer_.state.currentRow);
    }
    if (iGrid1->currentRow() != viewer_.state.currentRow)
        iGrid1->setCurrentRow(viewer_.state.currentRow);
    viewer_.state.topRow = iGrid1->topRow();
}

void frmViewList::showExtensions() {
    const ExtensionList& extensions = viewer_.state.extensions;
    if (shownExtensions_ != extensions.entries()) {
        shownExtensions_ = extensions.entries();
        Combo2->clear();
        for (const auto& extension : shownExtensions_) Combo2->addItem(toQt(readable(std::u16string_view(extension))));
    }
    Combo2->setCurrentIndex(extensions.chosen());
}

void frmViewList::showControls() {
    const ViewerState& state = viewer_.state;
    if (shownEvidence_ != state.hasEvidence)
        showColumns(state.hasEvidence);
    showRows();
    showExtensions();
    Label1->setText(toQt(state.matching));
    showText(*commaRemark_, state.notShown);
    Label4->setText(toQt(state.status));
    Command3->setEnabled(state.runEnabled);
    regradeKept_->setEnabled(state.hasEvidence);
    busyParts_.setEnabled(!state.busy);
    showPointer(*this, state.busyPointer);
}

}  // namespace quillon
