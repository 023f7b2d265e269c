// SPDX-License-Identifier: MIT
// Bad sectors in the main window, which is all ours: an entry of the menu that looks for them in a job that was done
// before, and what is known of them, behind the grade bar.
#include <QAction>
#include <QMenu>

#include "job/sector_scan_step.h"
#include "ui/frmMain.h"
#include "ui/grade_bar.h"
#include "widgets/qt_text.h"
#include "widgets/window_event_loop.h"

namespace quillon {

void frmMain::addSectorScan() {
    QAction* const entry = mnu->addAction(QStringLiteral("Look &for Bad Sectors"));
    entry->setObjectName(QStringLiteral("lookForSectors"));
    entry->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
    step(entry, &QAction::triggered, [this] { scanDoneJob(); });
}

void frmMain::scanDoneJob() {
    if (isJobRunning())
        return;
    const auto list = job_.lists().finalPath();
    if (job_.state.options.jobId.empty() || !list) {
        job_.state.texts.status = "Type the ID of a job first, or open its list";
        return;
    }
    {
        const StepGuard job(jobs_);
        lookForBadSectors(job_.passContext(), context_.installation, *list, ScanOf::DoneJob);
    }
    context_.loop.flush();
    if (isUnloaded())
        emit shutDown();
}

void frmMain::showSectors() {
    const std::string& known = job_.state.texts.sectors;
    const QString text = toQt("A click opens the Job Overview" + (known.empty() ? std::string() : "\n" + known));
    if (text != gradeBar->toolTip())
        gradeBar->setToolTip(text);
}

}  // namespace quillon
