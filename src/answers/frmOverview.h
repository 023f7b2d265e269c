// SPDX-License-Identifier: MIT
#pragma once

// The screen "Job Overview", our own: where the damage of a job or of a whole case lies. What it does is Overview's.
//
//   jobFrame "Job"
//     jobName                "Job 1234"
//     jobOrCase              instead of it in a case of several: "Job 1234-a", "Case 1234 (3 jobs)"
//     jobSource              where its files come from; the jobs of a case
//     quality, qualityBase   the recovery quality and what it is of
//     jobBar, gradeLegend    the grades of all files, and what colours and patterns mean
//   foldersFrame "Folders"
//     folders                the tree: "Folder", "Grades", "Quality", "Bad", "Files", "Size"; sorted by a click on a
//     title
//   mapFrame "Map"
//     mapUp "Up"             out of the folder that the map shows
//     mapFolder              the folder that the map shows
//     mapArea                "Area: files" or "Area: bytes"
//     map, mapLegend         the treemap, and what its colours mean
//   figuresFrame "Extensions and reasons"
//     extensions             "Extension", "Files", "Quality", "Grades"
//     reasons                "Reason", "Files", "Share"
//   filesFrame "Files"
//     filter                 what the rows are of
//     fileChoice             grade, doubt or read errors
//     showAll "Show All"     drops every choice
//     files                  the rows; after a comparison those that differ
//     matching               how many
//     headName, head         the first bytes of the current row
//   remark                   what is not known, what came of a step
//   toViewer "Show in Viewer", compareWith "Compare with ...", exportFiles "Export ...", writeReport "Report ...",
//   copyFiles "Copy These Files ...", copyAgain "Copy Again What Failed ...", done "Done"
//                          export and copies take the files that are shown, and are off behind a comparison. In a
//                          case all but export and report are on while the chosen folder lies in one job, and the
//                          viewer while that is its own

#include "answers/frmOverview_bars.h"
#include "answers/frmOverview_tree.h"
#include "answers/overview/overview.h"
#include "widgets/busy_parts.h"
#include "widgets/step_screen.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QTimer;
class QTreeView;
class QVBoxLayout;

namespace quillon {

class FolderMap;
class Grid;
class HexView;
class MapLegend;

/// The rows below as the grid shows them.
class FoundRowsSource final : public GridSource {
public:
    explicit FoundRowsSource(const FoundRows& rows) : rows_(rows) {}
    [[nodiscard]] int rowCount() const override { return rows_.count(); }
    [[nodiscard]] std::string cell(int row, int column) const override { return rows_.cell(row, column); }

private:
    const FoundRows& rows_;
};

class frmOverview final : public StepScreen {
    Q_OBJECT

public:
    /// The context and the messages must outlive the screen. It reads the job once it is shown.
    frmOverview(const ScreenContext& context, const ReportMessages& messages, OverviewHandover handover);

protected:
    void showEvent(QShowEvent* event) override;
    /// Shows the screen that was left.
    void leaveOrAsk() override;

private:
    void createJob();
    void createFolders();
    void createMap();
    void createFigures();
    void createFiles();
    void createButtons(QVBoxLayout& layout);
    void arrange();
    void setTabOrders();

    void connectControls();
    void connectFigures();
    void connectMap();
    void readJob();
    void goToViewer();
    void openCopies(bool failedOnly);

    void showControls() override;
    void showJob();
    void showFolders();
    void showMap();
    void showFigures();
    void showFiles();
    void showButtons();

    Overview overview_;
    OverviewHandover handover_;
    FoundRowsSource rows_{overview_.rows};
    FigureSource extensionRows_{overview_.state.extensions, "All extensions", "(none)"};
    FigureSource reasonRows_{overview_.state.reasons, "All reasons", "(none)"};
    BusyParts busyParts_;
    bool read_ = false;
    int shownJob_ = 0;
    int shownMap_ = -1;
    int shownRows_ = -1;

    QTimer* searchTimer_;
    QGroupBox *jobFrame, *foldersFrame, *mapFrame, *figuresFrame, *filesFrame;
    QLabel *jobName, *jobSource, *quality, *qualityBase;
    QComboBox* jobOrCase;
    JobBar* jobBar;
    GradeLegend* gradeLegend;
    FolderTree* tree_;
    QTreeView* folders;
    QPushButton* mapUp;
    QLabel* mapFolder;
    QComboBox* mapArea;
    FolderMap* map;
    MapLegend* mapLegend;
    Grid *extensions, *reasons;
    QLabel *filter, *matching, *headName, *remark;
    QComboBox* fileChoice;
    QPushButton* showAll;
    Grid* files;
    HexView* head;
    QPushButton *toViewer, *compareWith, *exportFiles, *writeReport, *copyFiles, *copyAgain, *done;
};

}  // namespace quillon
