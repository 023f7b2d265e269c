// SPDX-License-Identifier: MIT
// The way to the Job Overview, which is ours: an entry of the menu with a key, and a click on the grade bar.
#include <QAction>
#include <QMenu>

#include "answers/overview_handover.h"
#include "ui/frmMain.h"
#include "ui/grade_bar.h"

namespace quillon {

void frmMain::addOverview() {
    auto* entry = new QAction(QStringLiteral("Job &Overview"), this);
    entry->setObjectName(QStringLiteral("openOverview"));
    entry->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O));
    step(entry, &QAction::triggered, [this] {
        if (isJobRunning())
            return;
        if (job_.state.options.jobId.empty())
            job_.state.texts.status = "Type the ID of a job first, or open its list";
        else
            openAndHide(Screen::Overview, OverviewHandover{job_.state.options.jobId, {}});
    });
    addAction(entry);
    mnu->addAction(entry);
    showSectors();
    gradeBar->setCursor(Qt::PointingHandCursor);
    connect(gradeBar, &GradeBar::clicked, entry, &QAction::trigger);
}

}  // namespace quillon
