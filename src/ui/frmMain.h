// SPDX-License-Identifier: MIT
#pragma once

// The main window: the program's one permanent screen. It takes the job ID, the source and the target, holds the
// switches of a job, shows the running counts and the log, and is the door to all other screens. The rules behind the
// controls are JobSetup's, the job is JobDriver's; the window hands changes in and shows the state that comes out.
//
//   Frame1 "Source Drive/Folder"
//     Label28, Textbox1             "Job ID"                  job ID
//     CommandButton1                "Browse for Drive/Folder" source picker
//     Label2, lblSource             "Source:", "None"         chosen source
//     Label3, lblTarget             "Target:", "None"         chosen target
//     chkCopy                       "Copy to ->"              copy files to the target
//     Command1                      an image                  target picker
//   Frame3 "Options"
//     chkFileQuality                "Check file quality"      run the header test in a job
//     chkUseSkip                    "Use skip list"
//     chkCommon                     "Use Common Headers"
//     chkDefaults                   "Use defaults"            ticking it applies the settings again
//     Label12, Text1                "File List Separator"     one character
//     separatorNote (ours)          what the separator is for
//   Frame2 "Alerts"
//     Label23, Combo1               "On finish Send to"       recipient of the completion report
//     Command2                      "Query Network"           fills Combo1
//     Command3                      "Test"                    sends a test alert
//   ownOptions (ours) "More Options"
//     chkVerifyCopies             "Verify copies"
//     chkSalvage                  "Salvage unreadable parts"
//     copyGrades                  "Copy grades: all"      which grades are copied, with copyGradesAll, copyGradesGood
//     and
//                                 copyGrades_1 to copyGrades_10 in its menu
//   Frame5 "Stats"
//     Label7 lfiles "Total Files:"; Label25 lFOlders "Total folders:"; Label9 lsize "Total Size:";
//     Label26 lFolderErrors "Folder Errors:"; Label9_1 lCopyErrors "Copy Errors"; Label21 lTotCopied, and copiedNote
//     (ours) "Copied:" while Label21 is empty;
//     Label10 lRPC "Recovery Quality:"; Label19 "Throughput", Label16 files per minute, Label22 percentage of the copy;
//     Label4 lGoodFIles "Good:"; Label24 lCommon "C/Head:"; Label5 lCorruptFiles "Corrupt:";
//     Label6 lUnknownFiles "Unknown:"; Label1 lNoextensioN "No Ext:"; Label20 lEncrypted "Encrypted:";
//     Label18 lAccessErrors "Access errors:"; Label17 lBadFileName "Invalid Filename:"; Label14 lZeroBytes "Zero
//     Bytes:"; Label15 lSmallFiles "Small Files:"; Label11 lTested "Tested:"; Label13 lSkipped "Skipped:" gradeBar
//     (ours)               the grades as one bar
//   Frame4 "Commands"
//     CommandButton3 "Run", CommandButton4 "Stop", CommandButton5 "View", CommandButton6 "Zip"
//     Check1                        "Show Progress"           shows ProgressBar1
//     ProgressBar1, ProgressBar2    progress of the job, and of the file being copied with Label2_1
//   Label8                          one-line status and warnings
//   iGrid1                          "Time", "Event"           job log
//   sFileTU                         current file, or the log row clicked
//   Command4                        "Clear Log"
//   Command5                        "Check Folders"           without effect
//   Toolbar1 (Toolbar1_1 to _12), StatusBar1 (StatusBar1_1 version, _2 what the job does or how it ended, _3 status of
//     the job), Timer1
//   jobPace (ours)                  share of the job that is done, files per second and time left, in StatusBar1
//   Menus: mnuFile (mnuOpen, mnuExit), mnu (mnuSettings, mnuEdit, mnuDB, mnuEditCommon, mnuBS, mnuErrors, mnuMsgLogs,
//     mnuFLS, mnuAutoUpdate, and of ours mnuLook with lookDesktop, lookLight, lookDark, and mnuEvidence with
//     evidenceKeep, evidenceHeads), mnuViewf (mnuView), mnuh3 (mnuHelp, mnuAbout)
//   openSetupNetwork (ours)         "Set up Network"        in mnu, and in the menu of the Settings button
//   openHistory (ours)              "Database History"      in mnu
//   openOverview (ours)             "Job Overview"          in mnu; a click on gradeBar does the same
//
// The design gives the names Label9 and Label2 to two controls each. The first keeps it as it stands; the second is
// Label9_1 ("Copy Errors") and Label2_1 (percentage of the file being copied).

#include <QMainWindow>

#include "job/job_board.h"
#include "job/job_driver.h"
#include "job/job_setup.h"
#include "messaging/alert_exchange.h"
#include "messaging/network_enum.h"
#include "ui/frmMain_controls.h"
#include "widgets/grid_model.h"
#include "widgets/step_screen.h"

class QTimer;

namespace quillon {

class LookSwitch;

/// The rows of the job log as the grid shows them: "Time", "Event".
class JobLogRows final : public GridSource {
public:
    JobLogRows(const JobLog& log, const DateTexts& dates) : log_(log), dates_(dates) {}
    [[nodiscard]] int rowCount() const override { return static_cast<int>(log_.rows().size()); }
    [[nodiscard]] std::string cell(int row, int column) const override;
    [[nodiscard]] std::optional<std::uint32_t> rowColour(int row) const override;

private:
    const JobLog& log_;
    const DateTexts& dates_;
};

/// How the window reaches other computers. Without an exchange nothing is sent; without a network nothing is found.
struct MainWindowAlerts {
    AlertExchange* exchange = nullptr;
    std::shared_ptr<NetworkProvider> network;
};

class frmMain final : public StepWindow<QMainWindow>, public MainWindowDoor, private JobHost, private frmMainControls {
    Q_OBJECT

public:
    /// Context, job, exchange and look must outlive the window. Not shown before `reloadForm`.
    /// Without a look switch the look cannot be chosen.
    frmMain(const ScreenContext& context, Job& job, MainWindowAlerts alerts, LookSwitch* look = nullptr);
    ~frmMain() override;

    /// The start sequence, which ends with showing the window; also run again by the setup.
    void reloadForm() override;
    bool isLoaded() const override { return loaded_; }
    void loadSettings() override;
    /// Recounts the score board from the list of the job.
    void upDateAllLabels() override;
    void showMain() override;
    using ScreenSteps::showState;

    /// Copies the state of the six command controls to the toolbar.
    void syncToolbar();
    /// Buttons 1 to 11 but Stop.
    void disableToolbar();
    void enableToolbar();
    /// Panel 3 of the status bar.
    void showStatus(const std::string& text);

    /// Unloads all screens from the last to the first. A second call, from the closing that it causes, does nothing.
    void unloadAllForms();

    [[nodiscard]] bool isJobRunning() const { return jobs_.running(); }

signals:
    /// All screens are unloaded; the program may end.
    void shutDown();
    /// The person left while a job's pass could not be stopped; the program has to end at once.
    void abandoned();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    /// None: the only entry would hide the toolbar, and nothing would bring it back.
    QMenu* createPopupMenu() override { return nullptr; }

private:
    void connectControls();
    void connectOwnOptions();
    void connectMenus();
    void connectLooks();
    void connectToolbar();
    void addNetworkSetup();
    void addHistory();
    void addEvidenceMenu();
    void addOverview();

    // Handlers, in screen order
    void Textbox1_Change(const QString& text);
    void Text1_Change(const QString& text);
    void Command2_Click();
    void Command3_Click();
    void CommandButton3_Click();
    void CommandButton5_Click();
    void CommandButton6_Click();
    void Check1_Click(bool ticked);
    void iGrid1_Click(int row);
    void openModalScreen(Screen screen, QAction& entry, std::size_t toolbarButton);
    void openAndHide(Screen screen, const std::any& handOver = {});

    // JobHost
    void pickSource() override { afterSource(setup_.pickSource()); }
    void focusTargetPicker() override { focus("Command1"); }
    void updateToolbar() override { showState(); }
    [[nodiscard]] bool asksToGoOn() const override { return true; }

    [[nodiscard]] RecipientScreen recipientScreen();
    void afterSource(FocusAfter after);
    void logChangedFromTheGround();
    /// Brings all controls up to date with the job's state. Cheap where nothing changed.
    void showControls() override;
    void showCounts();
    void showTexts();
    void showSummary();
    void showCommands();
    void showToolbar(const JobBoard& board);
    void showOptions();
    void showOwnOptions(const JobBoard& board);
    void showLog();
    void leaveIfAbandoned();

    Job& job_;
    MainWindowAlerts alerts_;
    LookSwitch* look_;
    JobSetup setup_;
    JobLogRows logRows_;
    QTimer* timer_;
    bool loaded_ = false;
    Steps jobs_;
    bool toolbarRestricted_ = false;
    bool askingNetwork_ = false;
    std::int64_t leaveBy_ = 0;
};

}  // namespace quillon
