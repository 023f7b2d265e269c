// SPDX-License-Identifier: MIT
// The handlers around a job: what is set up, Run and Stop, the log.
#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>
#include <QUrl>

#include "archive/zip_handover.h"
#include "job/statistics.h"
#include "platform/folders.h"
#include "ui/frmMain.h"
#include "widgets/grid.h"
#include "widgets/qt_text.h"
#include "widgets/window_event_loop.h"

namespace quillon {
namespace {

// The one folder that is dragged, empty for anything else. Its bytes are taken as they are: a name that is not UTF-8
// cannot be chosen in Qt's picker, since Qt's own paths would change it, but it comes through a drop.
NativePath draggedFolder(const QMimeData& data) {
    const QList<QUrl> urls = data.urls();
    if (urls.size() != 1 || !urls.constFirst().isLocalFile())
        return {};
    const QUrl folder = urls.constFirst().adjusted(QUrl::StripTrailingSlash);
    NativePath path(QByteArray::fromPercentEncoding(folder.path(QUrl::FullyEncoded).toLatin1()).toStdString());
    return isFolder(path) ? path : NativePath{};
}

}  // namespace

void frmMain::connectControls() {
    JobOptions& options = job_.state.options;
    step(Textbox1, &QLineEdit::textChanged, [this](const QString& text) { Textbox1_Change(text); });
    click(CommandButton1, [this] { pickSource(); });
    step(chkCopy, &QCheckBox::toggled, [this](bool ticked) { setup_.copyTicked(ticked); });
    click(Command1, [this] { setup_.pickTarget(); });
    hear(chkFileQuality, &QCheckBox::toggled, [&options](bool ticked) { options.checkFileQuality = ticked; });
    step(chkUseSkip, &QCheckBox::toggled, [this](bool ticked) { setup_.skipListTicked(ticked); });
    hear(chkCommon, &QCheckBox::toggled, [&options](bool ticked) { options.useCommonHeaders = ticked; });
    step(chkDefaults, &QCheckBox::toggled, [this](bool ticked) { setup_.defaultsTicked(ticked); });
    step(Text1, &QLineEdit::textChanged, [this](const QString& text) { Text1_Change(text); });
    step(Combo1, &QComboBox::currentIndexChanged, [this](int index) { setup_.recipients.index = index; });
    click(Command2, [this] { Command2_Click(); });
    click(Command3, [this] { Command3_Click(); });
    click(CommandButton3, [this] { CommandButton3_Click(); });
    click(CommandButton4, [this] { askToStop(job_.passContext()); });
    click(CommandButton5, [this] { CommandButton5_Click(); });
    click(CommandButton6, [this] { CommandButton6_Click(); });
    step(Check1, &QCheckBox::toggled, [this](bool ticked) { Check1_Click(ticked); });
    step(iGrid1, &Grid::rowClicked, [this](int row) { iGrid1_Click(row); });
    click(Command4, [this] { setup_.askClearLog(); });
    // Kept: Command5 "Check Folders" has no effect (test CheckFoldersHasNoEffect).
    step(timer_, &QTimer::timeout, [this] { timerTick(job_.state, context_.surroundings.clock); });
}

void frmMain::Textbox1_Change(const QString& text) {
    setup_.jobIdChanged(fromQt(text));
    showState();
    Textbox1->setCursorPosition(static_cast<int>(Textbox1->text().size()));
}

void frmMain::Text1_Change(const QString& text) {
    setup_.separatorChanged(fromQt(text));
    showState();
    Text1->setCursorPosition(static_cast<int>(Text1->text().size()));
}

void frmMain::afterSource(FocusAfter after) {
    logChangedFromTheGround();
    showState();
    if (after == FocusAfter::JobId)
        focus("Textbox1");
}

// A row left the log and another took its place, which the number of rows does not tell.
void frmMain::logChangedFromTheGround() {
    iGrid1->rows().sourceChanged();
    iGrid1->scrollToEnd();
}

// Run
void frmMain::CommandButton3_Click() {
    if (isJobRunning())
        return;
    {
        const StepGuard job(jobs_);
        JobDriver(job_, *this, alerts_.exchange).run();
    }
    context_.loop.flush();
    if (isUnloaded())
        emit shutDown();
}

// View
void frmMain::CommandButton5_Click() {
    openAndHide(Screen::ViewList);
}

// Zip
void frmMain::CommandButton6_Click() {
    openAndHide(Screen::Zip, ZipHandover{job_.state.options.jobId, setup_.separator});
}

// Show Progress
void frmMain::Check1_Click(bool ticked) {
    job_.state.options.showProgress = ticked;
    job_.state.progress.shown = ticked;
}

void frmMain::iGrid1_Click(int row) {
    job_.state.texts.currentFile = iGrid1->cell(row, 0) + " - " + iGrid1->cell(row, 1);
    job_.state.fileLineShown = true;
}

void frmMain::upDateAllLabels() {
    context_.loop.flush();
    quillon::upDateAllLabels(job_.passContext(), job_.lists(), job_.messages);
    context_.loop.flush();
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
    // As with the button: a source can be chosen only with a job ID, and not during a job.
    if (CommandButton1->isEnabled() && !draggedFolder(*event->mimeData()).empty())
        event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event) {
    const NativePath folder = draggedFolder(*event->mimeData());
    if (folder.empty())  // it went since it was dragged in
        return;
    event->acceptProposedAction();
    run([this, &folder] { afterSource(setup_.dropSource(folder)); });
}

}  // namespace quillon
