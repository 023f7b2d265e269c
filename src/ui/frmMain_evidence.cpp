// SPDX-License-Identifier: MIT
// Two entries of our own: whether the next jobs leave evidence, and whether the first bytes of the files are in it.
#include <QAction>
#include <QMenu>

#include "app/preferences.h"
#include "ui/frmMain.h"

namespace quillon {

void frmMain::addEvidenceMenu() {
    QMenu* const menu = mnu->addMenu(QStringLiteral("E&vidence"));
    menu->setObjectName(QStringLiteral("mnuEvidence"));
    const auto add = [&](const char* name, const char* caption, Preference<bool> preference, bool JobOptions::*option) {
        QAction* const entry = menu->addAction(QLatin1String(caption));
        entry->setObjectName(QLatin1String(name));
        entry->setCheckable(true);
        connect(menu, &QMenu::aboutToShow, this,
                [this, entry, option] { entry->setChecked(job_.state.options.*option); });
        step(entry, &QAction::triggered, [this, entry, preference, option] {
            job_.state.options.*option = entry->isChecked();
            setup_.store([&](Preferences& preferences) { preferences.set(preference, entry->isChecked()); });
        });
    };
    add("evidenceKeep", "&Keep evidence of jobs", kKeepsEvidence, &JobOptions::keepEvidence);
    add("evidenceHeads", "Keep the first &bytes of files in it", kKeepsHeads, &JobOptions::keepHeads);
}

}  // namespace quillon
