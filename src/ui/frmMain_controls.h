// SPDX-License-Identifier: MIT
#pragma once

// Makes the controls of the main window and lays them out. What they do stands in frmMain; what they are called and
// mean, in the table of frmMain.h.

#include <array>

#include <QString>

#include "job/own_options.h"
#include "testing/grade.h"

class QAction;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMainWindow;
class QMenu;
class QProgressBar;
class QPushButton;
class QToolBar;
class QToolButton;
class QVBoxLayout;
class QWidget;

namespace quillon {

class GradeBar;
class Grid;
class ScoreBoard;
class TickButton;
struct BoardWidgets;

inline constexpr std::size_t kToolbarButtons = 12;

struct frmMainControls {
    QGroupBox *Frame1, *Frame2, *Frame3, *Frame4, *Frame5;
    QLabel *Label28, *Label2, *lblSource, *Label3, *lblTarget;
    QLineEdit* Textbox1;
    QPushButton *CommandButton1, *Command1;
    QCheckBox* chkCopy;
    QCheckBox *chkFileQuality, *chkUseSkip, *chkCommon, *chkDefaults;
    QPushButton *CommandButton3, *CommandButton4, *CommandButton5, *CommandButton6;
    QCheckBox* Check1;
    QLabel* Label23;
    QComboBox* Combo1;
    QPushButton *Command2, *Command3;
    QGroupBox* ownOptions;
    std::array<QCheckBox*, std::size(kOwnOptions)> ownBoxes;  ///< in the order of kOwnOptions
    TickButton* copyGrades;
    QLabel *Label12, *separatorNote;
    QLineEdit* Text1;

    QLabel *Label7, *lfiles, *Label25, *lFOlders, *Label9, *lsize, *Label26, *lFolderErrors;
    QLabel *Label9_1, *lCopyErrors, *Label21, *lTotCopied, *Label19, *Label16, *Label22;
    QLabel *Label11, *lTested, *Label13, *lSkipped;
    ByGrade<QLabel*> gradeCaptions, gradeCounts;  ///< called as the table of grades says
    QLabel *Label10, *lRPC, *Label8;
    QLabel* copiedNote;
    GradeBar* gradeBar;
    ScoreBoard* scoreBoard;

    Grid* iGrid1;
    QPushButton *Command4, *Command5;
    QLabel* sFileTU;
    QProgressBar *ProgressBar1, *ProgressBar2;
    QLabel* Label2_1;

    QToolBar* Toolbar1;
    std::array<QToolButton*, kToolbarButtons> toolbarButtons;  ///< Toolbar1_1 to Toolbar1_12
    std::array<QAction*, kToolbarButtons> toolbarActions;      ///< hide and show the buttons
    std::array<QLabel*, 3> statusPanels;                       ///< StatusBar1_1 to StatusBar1_3
    QLabel* jobPace;

    QMenu *mnuFile, *mnu, *mnuViewf, *mnuh3;
    QAction *mnuOpen, *mnuExit, *mnuSettings, *mnuEdit, *mnuDB, *mnuEditCommon, *mnuBS, *mnuErrors, *mnuMsgLogs;
    QAction *mnuFLS, *mnuAutoUpdate, *mnuView, *mnuHelp, *mnuAbout;
    QMenu* mnuLook;
    std::array<QAction*, 3> looks;  ///< in the order of kLooks

    /// Makes everything below `window`, in the order of the keyboard.
    void createControls(QMainWindow& window);

private:
    void createSource();
    void createOptions();
    void createAlerts();
    void createOwnOptions();
    void chainOwnOptions() const;
    void createCommands();
    void createStats();
    [[nodiscard]] QWidget* createQuality();
    void createTotals(BoardWidgets& board);
    void createGrades(BoardWidgets& board);
    void createLog(QVBoxLayout& layout);
    void createMenus(QMainWindow& window);
    void createLooks();
    void createToolbar(QMainWindow& window);
    void fillToolbar();
    void createStatusBar(QMainWindow& window);
    [[nodiscard]] QWidget* arrangeUpper() const;
    void arrange(QMainWindow& window);
};

}  // namespace quillon
