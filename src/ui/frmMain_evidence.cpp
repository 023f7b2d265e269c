// SPDX-License-Identifier: MIT
// Choices of our own for the next jobs: whether they leave evidence, whether the first bytes of the files are in it,
// and whether the ends of the files are looked at.
#include <QAction>
#include <QCheckBox>
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
        step(entry, &QAction::triggered,
             [this, entry, preference, option] { chooseForJobs(preference, option, entry->isChecked()); });
    };
    add("evidenceKeep", "&Keep evidence of jobs", kKeepsEvidence, &JobOptions::keepEvidence);
    add("evidenceHeads", "Keep the first &bytes of files in it", kKeepsHeads, &JobOptions::keepHeads);
    step(chkEnds, &QCheckBox::toggled,
         [this](bool ticked) { chooseForJobs(kLooksAtEnds, &JobOptions::lookAtEnds, ticked); });
}

// For the next jobs, and those of later days.
void frmMain::chooseForJobs(const Preference<bool>& preference, bool JobOptions::*option, bool chosen) {
    job_.state.options.*option = chosen;
    const auto stored = changePreferences(context_.installation.appFolder(),
                                          [&](Preferences& preferences) { preferences.set(preference, chosen); });
    if (!stored)
        job_.state.texts.status = "This lasts until the program ends: " + stored.error().text;
}

}  // namespace quillon
