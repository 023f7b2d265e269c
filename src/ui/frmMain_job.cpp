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
    connect(Textbox1, &QLineEdit::textChanged, this, &frmMain::Textbox1_Change);
    connect(CommandButton1, &QPushButton::clicked, this, &frmMain::CommandButton1_Click);
    connect(chkCopy, &QCheckBox::toggled, this, [this](bool ticked) {
        setup_.copyTicked(ticked);
        showState();
    });
    connect(Command1, &QPushButton::clicked, this, &frmMain::Command1_Click);
    connect(chkFileQuality, &QCheckBox::toggled, this,
            [this](bool ticked) { job_.state.options.checkFileQuality = ticked; });
    connect(chkUseSkip, &QCheckBox::toggled, this, [this](bool ticked) {
        setup_.skipListTicked(ticked);
        showState();
    });
    connect(chkCommon, &QCheckBox::toggled, this,
            [this](bool ticked) { job_.state.options.useCommonHeaders = ticked; });
    connect(chkDefaults, &QCheckBox::toggled, this, [this](bool ticked) {
        setup_.defaultsTicked(ticked);
        showState();
    });
    connect(Text1, &QLineEdit::textChanged, this, &frmMain::Text1_Change);
    connect(Combo1, &QComboBox::currentIndexChanged, this, [this](int index) {
        setup_.recipients.index = index;
        showState();
    });
    connect(Command2, &QPushButton::clicked, this, &frmMain::Command2_Click);
    connect(Command3, &QPushButton::clicked, this, &frmMain::Command3_Click);
    connect(CommandButton3, &QPushButton::clicked, this, &frmMain::CommandButton3_Click);
    connect(CommandButton4, &QPushButton::clicked, this, &frmMain::CommandButton4_Click);
    connect(CommandButton5, &QPushButton::clicked, this, &frmMain::CommandButton5_Click);
    connect(CommandButton6, &QPushButton::clicked, this, &frmMain::CommandButton6_Click);
    connect(Check1, &QCheckBox::toggled, this, &frmMain::Check1_Click);
    connect(iGrid1, &Grid::rowClicked, this, &frmMain::iGrid1_Click);
    connect(Command4, &QPushButton::clicked, this, &frmMain::Command4_Click);
    // Kept: Command5 "Check Folders" has no effect (test CheckFoldersHasNoEffect).
    connect(timer_, &QTimer::timeout, this, &frmMain::Timer1_Timer);
}

void frmMain::Textbox1_Change() {
    setup_.jobIdChanged(fromQt(Textbox1->text()));
    showState();
    Textbox1->setCursorPosition(static_cast<int>(Textbox1->text().size()));
}

void frmMain::Text1_Change() {
    setup_.separatorChanged(fromQt(Text1->text()));
    showState();
    Text1->setCursorPosition(static_cast<int>(Text1->text().size()));
}

// Browse for the source
void frmMain::CommandButton1_Click() {
    afterSource(setup_.pickSource());
}

void frmMain::afterSource(FocusAfter focus) {
    logChangedFromTheGround();
    showState();
    if (focus == FocusAfter::JobId)
        Textbox1->setFocus();
}

// A row left the log and another took its place, which the number of rows does not tell.
void frmMain::logChangedFromTheGround() {
    iGrid1->rows().sourceChanged();
    iGrid1->scrollToEnd();
}

// Choose the target
void frmMain::Command1_Click() {
    setup_.pickTarget();
    showState();
}

void frmMain::focusTargetPicker() {
    showState();
    Command1->setFocus();
}

// Run
void frmMain::CommandButton3_Click() {
    if (running_)
        return;
    running_ = true;
    JobDriver(job_, *this, alerts_.exchange).run();
    running_ = false;
    context_.loop.flush();
    if (unloading_)
        emit shutDown();
}

// Stop
void frmMain::CommandButton4_Click() {
    askToStop(job_.passContext());
    showState();
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
void frmMain::Check1_Click() {
    job_.state.options.showProgress = Check1->isChecked();
    job_.state.progress.shown = Check1->isChecked();
    showState();
}

void frmMain::iGrid1_Click(int row) {
    job_.state.texts.currentFile = iGrid1->cell(row, 0) + " - " + iGrid1->cell(row, 1);
    job_.state.fileLineShown = true;
    showState();
}

// Clear Log
void frmMain::Command4_Click() {
    static_cast<void>(setup_.askClearLog());
    showState();
}

void frmMain::Timer1_Timer() {
    timerTick(job_.state, context_.surroundings.clock);
    showState();
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
    afterSource(setup_.dropSource(folder));
}

}  // namespace quillon
