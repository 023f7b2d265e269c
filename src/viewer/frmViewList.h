// SPDX-License-Identifier: MIT
#pragma once

// The screen "View File List": the files of one grade, and the way to a better database. What it does is ListViewer's.
//
//   Frame1 "Vew Files of type"
//     Combo1                      the category: a report message
//     Command2                    "Filter"                loads the grid
//     Label5, Text1               "Max Files", "3000"     row limit of a load
//     Label9, Text2               "Start From", "1"       without effect
//     Check1                      "Use Ignore List"       without effect
//   Frame2 "Matching Files"
//     iGrid1                      "Path", "Ext", and hidden "Problem!"; behind them, when the list has evidence, the
//                                 columns of our own, see own_columns.h
//     Label1                      "Matching : " and the row count
//     commaRemark_                ours: "52 rows with commas are not shown"
//     Label6, Label7, Label8      a legend; never shown
//   Frame3 "Extension Editor"
//     Label2, Combo2              "Extension"             the extension to work on
//     Label4                      status, and the count of the extension
//     Command3                    "Run"                   opens the Extension Editor
//     Command4                    "Retest"
//     regradeKept_                ours: "Regrade from kept heads", on when the list has evidence
//     Label3, Combo3, Command5    "Mark Files as", "Run"  never shown, without effect
//     Command6                    "Retest Skip List"      never shown, without effect
//   openOverview                  ours: "Overview"      the Job Overview of the list's job
//   copyThese_                    ours: "Copy These Files ..."  files of the category and extension
//   Command1                      "Done"
//   mnuMnu                        popup of the grid: mnuAddSkip "Add to Skip List"

#include "answers/overview_handover.h"
#include "viewer/list_viewer.h"
#include "widgets/busy_parts.h"
#include "widgets/grid_model.h"
#include "widgets/step_screen.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;

namespace quillon {

class Grid;

/// The viewer's rows as the grid shows them.
class ViewGridRows final : public GridSource {
public:
    explicit ViewGridRows(ListViewer& viewer) : viewer_(viewer) {}
    [[nodiscard]] int rowCount() const override { return viewer_.state.rows.shown(); }
    [[nodiscard]] std::string cell(int row, int column) const override;

private:
    ListViewer& viewer_;
};

class frmViewList final : public StepScreen {
    Q_OBJECT

public:
    /// The context must outlive the screen. `files`: what it begins with; null for nothing.
    frmViewList(const ScreenContext& context, const ViewedJob& job, const ViewerHandover* files = nullptr);

protected:
    /// Closing shows the main window, without a recount; a retest in progress cannot be left.
    void closeEvent(QCloseEvent* event) override;

private:
    void createCategory();
    void createRows();
    void createLegend();
    void createEditor();
    void arrange();
    void setTabOrders();
    void connectControls();

    void connectGrid();
    void Command1_Click();
    void Command3_Click();
    void beginWith(const ViewerHandover& files);
    void goToOverview();

    void showControls() override;
    void fillFixedLists();
    void showColumns(bool withOwn);
    void showRows();
    void showExtensions();

    ListViewer viewer_;
    ViewGridRows gridRows_{viewer_};
    bool shownEvidence_ = false;
    int shownContents_ = -1;
    std::vector<std::u16string> shownExtensions_;
    BusyParts busyParts_;

    QGroupBox *Frame1, *Frame2, *Frame3;
    QComboBox *Combo1, *Combo2, *Combo3;
    QPushButton *Command1, *Command2, *Command3, *Command4, *Command5, *Command6, *openOverview, *copyThese_;
    QLabel *Label1, *Label2, *Label3, *Label4, *Label5, *Label6, *Label7, *Label8, *Label9;
    QLabel* commaRemark_;
    QPushButton* regradeKept_;
    QLineEdit *Text1, *Text2;
    QCheckBox* Check1;
    Grid* iGrid1;
    QMenu* mnuMnu;
    QAction* mnuAddSkip;
};

}  // namespace quillon
