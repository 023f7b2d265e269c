// SPDX-License-Identifier: MIT
// What the controls do. How they are made and stand together is in frmOverview_controls.cpp.
#include "answers/frmOverview.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>

#include "answers/frmOverview_map.h"
#include "text/list_text.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

std::vector<GridColumn> columnsOf(const FoundRows& rows) {
    const auto titles = rows.titles();
    if (rows.areChanges())
        return {{titles[0], 300}, {titles[1], 70}, {titles[2], 90}, {titles[3], 90}};
    return {{titles[0], 250}, {titles[1], 70, false, true}, {titles[2], 110}, {titles[3], 120}};
}

struct ShownScopes {
    const std::vector<std::string>& items;
    int index = 0;
    bool enabled = true;
};

}  // namespace

frmOverview::frmOverview(const ScreenContext& context, const ReportMessages& messages, OverviewHandover handover)
    : StepScreen(context, Screen::Overview, "frmOverview", "Job Overview"),
      overview_({context.installation, context.surroundings, messages}, *this),
      handover_(std::move(handover)) {
    createJob();
    createFolders();
    createMap();
    createFigures();
    createFiles();
    arrange();
    setTabOrders();
    connectControls();
    begin();
}

void frmOverview::connectControls() {
    connectFigures();
    connectMap();
    step(jobOrCase, &QComboBox::currentIndexChanged, [this](int entry) { overview_.chooseScope(entry); });
    step(fileChoice, &QComboBox::currentIndexChanged, [this](int entry) { overview_.chooseFiles(entry); });
    click(showAll, [this] { overview_.showAll(); });
    step(files, &Grid::currentRowChanged, [this](int row) { overview_.selectRow(row); });
    step(searchTimer_, &QTimer::timeout,
         [this] { passOver(overview_.searchOn(), "the state tells whether it goes on"); });
    click(toViewer, [this] { goToViewer(); });
    click(compareWith, [this] { overview_.compare(); });
    click(exportFiles, [this] { overview_.exportFiles(); });
    click(writeReport, [this] { overview_.report(); });
    click(copyFiles, [this] { openCopies(false); });
    click(copyAgain, [this] { openCopies(true); });
    connect(done, &QPushButton::clicked, this, &frmOverview::close);
    closeOnEscape();
}

void frmOverview::connectFigures() {
    step(extensions, &Grid::currentRowChanged, [this](int row) { overview_.chooseExtension(row); });
    step(reasons, &Grid::currentRowChanged, [this](int row) { overview_.chooseReason(row); });
    step(folders->selectionModel(), &QItemSelectionModel::currentRowChanged,
         [this](const QModelIndex& current, const QModelIndex& /*previous*/) {
             if (FolderNode* const node = tree_->nodeOf(current))
                 overview_.chooseFolder(*node);
         });
}

void frmOverview::connectMap() {
    click(mapUp, [this] { overview_.walkOut(); });
    step(mapArea, &QComboBox::currentIndexChanged,
         [this](int entry) { overview_.chooseArea(static_cast<MapArea>(entry)); });
    step(map, &FolderMap::tileChosen, [this](int tile) { overview_.chooseTile(tile); });
    step(map, &FolderMap::tileEntered, [this](int tile) { overview_.walkInto(tile); });
    step(map, &FolderMap::left, [this] { overview_.walkOut(); });
}

// The window stands before a long list is read.
void frmOverview::showEvent(QShowEvent* event) {
    StepScreen::showEvent(event);
    if (read_)
        return;
    read_ = true;
    QTimer::singleShot(0, this, [this] { run([this] { readJob(); }); });
}

void frmOverview::readJob() {
    overview_.open(handover_.job);
}

void frmOverview::leaveOrAsk() {
    if (handover_.back)
        handover_.back();
    else
        context_.navigator.showMain();
    leave();
}

// The viewer begins anew: one that stands behind this screen would keep what it shows.
void frmOverview::goToViewer() {
    const ViewerHandover wanted = overview_.forViewer();
    context_.navigator.unload(Screen::ViewList);
    context_.navigator.open(Screen::ViewList, wanted);
    leave();
}

void frmOverview::openCopies(bool failedOnly) {
    context_.navigator.openModal(Screen::Copies, overview_.forCopies(failedOnly));
}

void frmOverview::showControls() {
    busyParts_.setEnabled(!overview_.state.busy);
    showPointer(*this, overview_.state.busy);
    showJob();
    showFolders();
    showMap();
    showFigures();
    showFiles();
    showButtons();
}

void frmOverview::showJob() {
    const OverviewState& state = overview_.state;
    showText(*jobName, state.job);
    showText(*jobSource, state.source);
    showText(*quality, state.quality);
    showText(*qualityBase, state.base);
    showText(*remark, state.busy ? "Reading ..." : state.remark);
    remark->setVisible(!remark->text().isEmpty());
    setTone(*remark, state.trouble && !state.busy ? "trouble" : "");
    if (!state.busy)
        showChoice(*jobOrCase, ShownScopes{state.scopes, state.scope, true});
    jobOrCase->setVisible(state.scopes.size() > 1);
    jobName->setVisible(state.scopes.size() <= 1);
    if (shownJob_ == state.opened)
        return;
    shownJob_ = state.opened;
    jobBar->setFigures(state.total);
    gradeLegend->setFigures(state.total);
    for (Grid* grid : {extensions, reasons}) grid->rows().sourceChanged();
}

void frmOverview::showFolders() {
    if (overview_.folders() == nullptr)
        return;
    tree_->setFolders(overview_.folders());
    const FolderNode* const chosen = overview_.state.folder;
    if (tree_->nodeOf(folders->currentIndex()) == chosen)
        return;
    // What leads to the folder is opened, so that it is a row of the view.
    std::vector<const FolderNode*> way;
    for (const FolderNode* node = chosen; node != nullptr; node = node->above) way.insert(way.begin(), node);
    for (const FolderNode* node : way) {
        if (node == chosen && node->above != nullptr)
            break;
        const QModelIndex index = tree_->indexOf(*node);
        if (tree_->canFetchMore(index))
            tree_->fetchMore(index);
        folders->expand(index);
    }
    folders->setCurrentIndex(tree_->indexOf(*chosen));
}

void frmOverview::showMap() {
    const OverviewState& state = overview_.state;
    mapUp->setEnabled(!state.busy && state.mapRoot != nullptr && state.mapRoot->above != nullptr);
    if (shownMap_ == state.contents)
        return;
    shownMap_ = state.contents;
    map->setTiles(state.tiles);
    mapArea->setCurrentIndex(static_cast<int>(state.area));
    if (state.mapRoot != nullptr)
        showText(*mapFolder,
                 state.mapRoot->above == nullptr ? "All files" : readable(std::string_view(state.mapRoot->facts.path)));
}

void frmOverview::showFigures() {
    if (!overview_.state.isOpen)
        return;
    showCurrentRow(*extensions, overview_.state.extension);
    showCurrentRow(*reasons, overview_.state.reason);
    reasons->setEnabled(overview_.state.knowsAll);
}

void frmOverview::showFiles() {
    const OverviewState& state = overview_.state;
    showText(*filter, state.filter);
    showText(*matching, state.matching);
    fileChoice->setCurrentIndex(state.choice);
    if (shownRows_ != overview_.rows.contents()) {
        shownRows_ = overview_.rows.contents();
        files->setColumns(columnsOf(overview_.rows));
        files->showOtherRows(0, -1);
    }
    files->rows().sourceGrew();
    if (files->currentRow() != state.currentRow)
        files->setCurrentRow(state.currentRow);
    if (head->bytes() != state.head)
        head->setBytes(state.head);
    showText(*headName, state.headText.empty() ? "Choose a file to see its first bytes" : state.headText);
    if (overview_.isSearching())
        searchTimer_->start(0);
    else
        searchTimer_->stop();
}

void frmOverview::showButtons() {
    const bool usable = overview_.state.isOpen && !overview_.state.busy;
    const OverviewState& state = overview_.state;
    for (QPushButton* button : {writeReport, showAll}) button->setEnabled(usable);
    toViewer->setEnabled(usable && state.isInOwnJob);
    compareWith->setEnabled(usable && state.hasOneJob);
    // Changes are no files of the job that a filter would find.
    const bool areFiles = usable && !overview_.rows.areChanges();
    exportFiles->setEnabled(areFiles);
    for (QPushButton* button : {copyFiles, copyAgain}) button->setEnabled(areFiles && state.hasOneJob);
}

}  // namespace quillon
