// SPDX-License-Identifier: MIT
// Shows the job's state in the controls. A control is written only where it differs: a label that is set anew lays its
// window out again.
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include "job/statistics.h"
#include "text/list_text.h"
#include "text/numbers.h"
#include "ui/frmMain.h"
#include "ui/grade_bar.h"
#include "widgets/grid.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

void showEnabled(QWidget& control, bool enabled) {
    // Not isEnabled(): inside of a disabled frame that is always false.
    if (control.testAttribute(Qt::WA_ForceDisabled) == enabled)
        control.setEnabled(enabled);
}

// A bar counts in 32 bits; a longer way is shown in thousandths.
void showBar(QProgressBar& bar, const JobProgress& state) {
    constexpr std::int64_t kLongest = 1'000'000'000;
    const std::int64_t scale = state.maximum > kLongest ? state.maximum / kLongest + 1 : 1;
    bar.setMaximum(static_cast<int>(std::max<std::int64_t>(state.maximum / scale, 1)));
    bar.setValue(static_cast<int>(state.value / scale));
    bar.setVisible(state.shown);
}

}  // namespace

std::string JobLogRows::cell(int row, int column) const {
    const LogRow& shown = log_.rows()[static_cast<std::size_t>(row)];
    return column == 0 ? dates_.time(shown.time) : shown.text;
}

std::optional<std::uint32_t> JobLogRows::rowColour(int row) const {
    return log_.rows()[static_cast<std::size_t>(row)].colour;
}

void frmMain::showControls() {
    showOptions();
    showCounts();
    showTexts();
    showCommands();
    showLog();
    leaveIfAbandoned();
}

void frmMain::showCounts() {
    const JobCounters& counts = job_.state.counters;
    const std::pair<QLabel*, std::int32_t> labels[] = {{lFOlders, counts.folders}, {lFolderErrors, counts.folderErrors},
                                                       {lfiles, counts.files},     {lSkipped, counts.skipped},
                                                       {lTested, counts.rowsRead}, {lCopyErrors, counts.copyErrors}};
    for (const auto& [label, count] : labels) showText(*label, grouped(count));
    for (const Grade grade : kBoardOrder) showText(*gradeCounts[grade], grouped(counts[grade]));
    gradeBar->setCounts(counts.grades);
}

void frmMain::showTexts() {
    const JobTexts& texts = job_.state.texts;
    showText(*Label8, texts.status);
    showText(*statusPanels[2], texts.statusPanel);
    showSummary();
    const std::string pace = job_.state.phase == JobPhase::Idle ? std::string() : texts.pace;
    showText(*jobPace, pace);
    jobPace->setVisible(!pace.empty());
    showText(*lRPC, texts.quality);
    showText(*lsize, sizeLabel(job_.state));
    showText(*Label16, texts.throughput);
    showText(*Label22, texts.jobPercent);
    showText(*Label2_1, texts.filePercent);
    Label2_1->setVisible(!texts.filePercent.empty());
    showText(*Label21, texts.copiedCaption);
    copiedNote->setVisible(texts.copiedCaption.empty());
    showText(*lTotCopied, texts.copied);
    showText(*sFileTU, texts.currentFile);
}

void frmMain::showSummary() {
    static constexpr std::pair<JobTone, const char*> kTones[] = {
        {JobTone::Quiet, ""}, {JobTone::Running, "running"}, {JobTone::Done, "done"}, {JobTone::Trouble, "trouble"}};
    const JobSummary summary = jobSummary(job_.state);
    showText(*statusPanels[1], summary.text);
    for (const auto& [tone, name] : kTones)
        if (tone == summary.tone)
            setTone(*statusPanels[1], name);
}

void frmMain::showOptions() {
    const JobOptions& options = job_.state.options;
    showText(*Textbox1, options.jobId);
    showText(*Text1, setup_.separator);
    showText(*lblSource, options.source ? readable(options.source->native()) : "None");
    showText(*lblTarget, options.target ? readable(options.target->native()) : "None");
    chkCopy->setChecked(options.copy);
    chkFileQuality->setChecked(options.checkFileQuality);
    chkUseSkip->setChecked(options.useSkipList);
    chkUseSkip->setEnabled(options.useSkipListEnabled);
    chkCommon->setChecked(options.useCommonHeaders);
    chkCommon->setEnabled(options.useCommonHeadersEnabled);
    chkDefaults->setChecked(setup_.useDefaults);
    Check1->setChecked(options.showProgress);
    showChoice(*Combo1, setup_.recipients);
    Command2->setEnabled(setup_.recipients.queryEnabled);
    Command3->setEnabled(setup_.recipients.testEnabled);
    job_.state.options.recipientIndex = setup_.recipients.index;
    job_.state.options.recipient = setup_.recipients.text();
}

void frmMain::showCommands() {
    const JobState& state = job_.state;
    const JobBoard board = boardOf(state);
    showEnabled(*Frame1, board.frames);
    showEnabled(*Frame3, board.frames);
    showOwnOptions(board);
    mnu->menuAction()->setEnabled(board.menus);
    mnuFile->menuAction()->setEnabled(board.menus);
    showEnabled(*CommandButton1, setup_.sourceEnabled);
    showEnabled(*Command1, setup_.targetEnabled);
    showEnabled(*CommandButton3, board.run);
    showEnabled(*CommandButton4, board.stop);
    showEnabled(*CommandButton5, board.view);
    showEnabled(*CommandButton6, board.zip);
    Label19->setVisible(board.throughput);
    Label16->setVisible(board.throughput);
    sFileTU->setVisible(state.fileLineShown);
    showBar(*ProgressBar1, state.progress);
    showBar(*ProgressBar2, {false, 100, state.fileProgress});  // starts hidden, and nothing shows it
    showPointer(*this, board.busyPointer || askingNetwork_);
    if (board.timer != timer_->isActive())
        board.timer ? timer_->start() : timer_->stop();
    showToolbar(board);
}

void frmMain::showToolbar(const JobBoard& board) {
    const bool restricted = board.toolbarRestricted;
    if (restricted) {
        disableToolbar();
        toolbarButtons[5]->setEnabled(board.stop);
    } else if (toolbarRestricted_) {
        enableToolbar();
    } else {
        syncToolbar();
    }
    toolbarRestricted_ = restricted;
}

void frmMain::showLog() {
    const int rows = logRows_.rowCount();
    const int shown = iGrid1->rowCount();
    if (rows < shown) {
        iGrid1->rows().sourceChanged();
    } else if (rows > shown) {
        iGrid1->rows().sourceGrew();
        iGrid1->scrollToEnd();
    }
}

}  // namespace quillon
