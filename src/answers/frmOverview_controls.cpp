// SPDX-License-Identifier: MIT
// Makes the controls of the screen "Job Overview" and lays them out.
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

#include "answers/frmOverview.h"
#include "answers/frmOverview_map.h"
#include "widgets/control_maker.h"
#include "widgets/grid.h"
#include "widgets/hex_view.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

constexpr QSize kFirstSize(1280, 900);
constexpr int kBarWidth = 130;

QVBoxLayout* layOut(QGroupBox& frame) {
    auto* layout = new QVBoxLayout(&frame);
    layout->setSpacing(kSpacing / 2);
    return layout;
}

QHBoxLayout* makeRow() {
    auto* row = new QHBoxLayout;
    row->setSpacing(kSpacing);
    return row;
}

// Shares of the room at first, and of what a larger window has to give.
QSplitter* makeSplitter(Qt::Orientation orientation, QWidget* first, QWidget* second, int firstShare, int secondShare) {
    auto* splitter = new QSplitter(orientation);
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(first);
    splitter->addWidget(second);
    splitter->setStretchFactor(0, firstShare);
    splitter->setStretchFactor(1, secondShare);
    constexpr int kShare = 1000;  // more than there is: only the proportion counts
    splitter->setSizes({kShare * firstShare, kShare * secondShare});
    return splitter;
}

void setFigureColumns(Grid& grid, const FigureSource& rows, const char* what, const char* bar, bool quality) {
    grid.setColumns({{what, 96}, {"Files", 56, false, true}, {"Quality", 66, !quality, true}, {bar, 60}});
    grid.setItemDelegateForColumn(FigureSource::kBarColumn, new BarDelegate(&grid, [&rows](const QModelIndex& index) {
                                      return rows.picture(index.row());
                                  }));
    grid.rows().setSource(&rows);
}

}  // namespace

void frmOverview::createJob() {
    jobFrame = makeFrame("jobFrame", "Job");
    auto* layout = layOut(*jobFrame);
    auto* row = makeRow();
    jobName = makeLabel("jobName", "");
    jobSource = make<ElidedLabel>("jobSource");
    jobSource->setAccessibleName(QStringLiteral("Source"));
    quality = makeLabel("quality", "");
    quality->setAccessibleName(QStringLiteral("Recovery quality"));
    QFont large = countFont(quality->font());
    large.setPointSizeF(large.pointSizeF() * 1.7);
    quality->setFont(large);
    qualityBase = makeLabel("qualityBase", "");
    jobOrCase = make<QComboBox>("jobOrCase");
    jobOrCase->setAccessibleName(QStringLiteral("The job, or its whole case"));
    jobOrCase->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    jobOrCase->hide();
    row->addWidget(quality);
    row->addWidget(qualityBase);
    row->addStretch(1);
    row->addWidget(jobName);
    row->addWidget(jobOrCase);
    row->addWidget(jobSource, 2);
    layout->addLayout(row);
    jobBar = make<JobBar>("jobBar");
    gradeLegend = make<GradeLegend>("gradeLegend");
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    gradeLegend->setSizePolicy(policy);
    layout->addWidget(jobBar);
    layout->addWidget(gradeLegend);
}

void frmOverview::createFolders() {
    foldersFrame = makeFrame("foldersFrame", "F&olders");
    auto* layout = layOut(*foldersFrame);
    tree_ = new FolderTree(this);
    folders = make<QTreeView>("folders");
    folders->setAccessibleName(QStringLiteral("Folders"));
    folders->setModel(tree_);
    folders->setUniformRowHeights(true);
    folders->setAlternatingRowColors(true);
    folders->setTextElideMode(Qt::ElideMiddle);  // jobs of a case differ at their ends
    folders->setItemDelegateForColumn(FolderTree::Grades, new BarDelegate(folders, [this](const QModelIndex& index) {
                                          return tree_->picture(index);
                                      }));
    folders->header()->setStretchLastSection(false);
    folders->header()->setSectionResizeMode(FolderTree::Name, QHeaderView::Stretch);
    folders->header()->setMinimumSectionSize(48);
    const int narrow = fontMetrics().horizontalAdvance(QStringLiteral("1,234,567")) + 2 * kSpacing;
    folders->setColumnWidth(FolderTree::Grades, kBarWidth);
    for (const int column : {FolderTree::Quality, FolderTree::Bad, FolderTree::Files, FolderTree::Size})
        folders->setColumnWidth(column, narrow);
    folders->setSortingEnabled(true);
    folders->sortByColumn(FolderTree::Name, Qt::AscendingOrder);
    layout->addWidget(folders);
}

void frmOverview::createMap() {
    mapFrame = makeFrame("mapFrame", "Map");
    auto* layout = layOut(*mapFrame);
    auto* row = makeRow();
    mapUp = makeButton("mapUp", "&Up");
    mapFolder = make<ElidedLabel>("mapFolder");
    mapFolder->setAccessibleName(QStringLiteral("Folder of the map"));
    mapArea = make<QComboBox>("mapArea");
    mapArea->setAccessibleName(QStringLiteral("What the areas of the map show"));
    mapArea->addItems({QStringLiteral("Area: files"), QStringLiteral("Area: bytes")});
    row->addWidget(mapUp);
    row->addWidget(mapFolder, 1);
    row->addWidget(mapArea);
    layout->addLayout(row);
    map = make<FolderMap>("map");
    mapLegend = make<MapLegend>("mapLegend");
    layout->addWidget(map, 1);
    layout->addWidget(mapLegend);
}

void frmOverview::createFigures() {
    figuresFrame = makeFrame("figuresFrame", "Extensions and reasons");
    auto* layout = new QHBoxLayout(figuresFrame);
    layout->setSpacing(kSpacing);
    extensions = make<Grid>("extensions");
    extensions->setAccessibleName(QStringLiteral("Extensions"));
    setFigureColumns(*extensions, extensionRows_, "Extension", "Grades", true);
    reasons = make<Grid>("reasons");
    reasons->setAccessibleName(QStringLiteral("Reasons"));
    setFigureColumns(*reasons, reasonRows_, "Reason", "Share", false);
    layout->addWidget(extensions, 5);
    layout->addWidget(reasons, 4);
}

void frmOverview::createFiles() {
    filesFrame = makeFrame("filesFrame", "Files");
    auto* layout = layOut(*filesFrame);
    auto* row = makeRow();
    filter = make<ElidedLabel>("filter");
    filter->setAccessibleName(QStringLiteral("What is shown"));
    fileChoice = make<QComboBox>("fileChoice");
    fileChoice->setAccessibleName(QStringLiteral("Grade, doubt or read errors"));
    fileChoice->setMaxVisibleItems(16);
    for (const FileChoice& choice : fileChoices()) fileChoice->addItem(toQt(choice.caption));
    showAll = makeButton("showAll", "Show &All");
    row->addWidget(filter, 1);
    row->addWidget(fileChoice);
    row->addWidget(showAll);
    layout->addLayout(row);
    files = make<Grid>("files");
    files->setAccessibleName(QStringLiteral("Files"));
    files->setTextElideMode(Qt::ElideMiddle);
    files->rows().setSource(&rows_);
    auto* bytes = new QWidget;
    auto* column = new QVBoxLayout(bytes);
    column->setContentsMargins({});
    column->setSpacing(kSpacing / 2);
    headName = make<ElidedLabel>("headName");
    head = make<HexView>("head");
    head->setAccessibleName(QStringLiteral("First bytes of the file"));
    column->addWidget(headName);
    column->addWidget(head, 1);
    layout->addWidget(makeSplitter(Qt::Horizontal, files, bytes, 9, 10), 1);
    matching = makeLabel("matching", "");
    layout->addWidget(matching);
}

void frmOverview::createButtons(QVBoxLayout& layout) {
    remark = makeLabel("remark", "");
    remark->setWordWrap(true);
    layout.addWidget(remark);
    auto* row = makeRow();
    toViewer = makeButton("toViewer", "Show in &Viewer");
    compareWith = makeButton("compareWith", "&Compare with ...");
    exportFiles = makeButton("exportFiles", "&Export ...");
    writeReport = makeButton("writeReport", "&Report ...");
    copyFiles = makeButton("copyFiles", "Copy &These Files ...");
    copyAgain = makeButton("copyAgain", "Copy A&gain What Failed ...");
    done = makeButton("done", "&Done");
    done->setMinimumWidth(96);
    for (QPushButton* button : {toViewer, compareWith, exportFiles, writeReport, copyFiles, copyAgain})
        row->addWidget(button);
    row->addStretch(1);
    row->addWidget(done);
    layout.addLayout(row);
}

void frmOverview::arrange() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kSpacing);
    layout->addWidget(jobFrame);
    auto* right = makeSplitter(Qt::Vertical, mapFrame, figuresFrame, 4, 3);
    auto* upper = makeSplitter(Qt::Horizontal, foldersFrame, right, 1, 1);
    layout->addWidget(makeSplitter(Qt::Vertical, upper, filesFrame, 3, 2), 1);
    createButtons(*layout);
    busyParts_ = {jobOrCase,   foldersFrame, mapFrame,    figuresFrame, filesFrame, toViewer,
                  compareWith, exportFiles,  writeReport, copyFiles,    copyAgain,  done};
    searchTimer_ = new QTimer(this);
    resize(kFirstSize);
}

void frmOverview::setTabOrders() {
    const std::array<QWidget*, 18> order = {jobOrCase,   folders,     mapUp,       mapArea,   map,       extensions,
                                            reasons,     fileChoice,  showAll,     files,     head,      toViewer,
                                            compareWith, exportFiles, writeReport, copyFiles, copyAgain, done};
    for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
    folders->setFocus();
}

}  // namespace quillon
