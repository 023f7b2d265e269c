// SPDX-License-Identifier: MIT
#include "ui/screens.h"

#include "answers/frmCopies.h"
#include "answers/frmOverview.h"
#include "app/share_gate.h"
#include "archive/frmZip.h"
#include "editors/frmBadSectors.h"
#include "editors/frmCommonHeaders.h"
#include "editors/frmErrors.h"
#include "editors/frmExtEditor.h"
#include "editors/frmHistory.h"
#include "editors/frmPreviewBadSector.h"
#include "editors/frmSectorMarkers.h"
#include "editors/frmSkipList.h"
#include "editors/frmUpdatedb.h"
#include "job/job.h"
#include "setup/frmSetupNetwork.h"
#include "setup/frmSetupWizard.h"
#include "text/list_text.h"
#include "ui/frmABout.h"
#include "ui/help_window.h"
#include "viewer/frmViewList.h"
#include "widgets/navigator.h"
#include "widgets/screen_context.h"
#include "widgets/share_wait_box.h"

namespace quillon {

void askShareFirst(Job& job) {
    const std::string share = readable(job.installation().paths().sharedPath.native());
    ShareWaitBox wait;
    if (!passShareGate(job.installation(), job.surroundings(), wait))
        job.passContext().log(
            "The shared folder " + share + " does not answer: the local database is used until the next start",
            kLightOrange);
}

void askArchiveFirst(Job& job) {
    const std::string folder = readable(job.installation().paths().zipPath.native());
    ShareWaitBox wait;
    wait.setWindowTitle(QStringLiteral("Archive Path"));
    if (!passArchiveGate(job.installation(), job.surroundings(), wait))
        job.passContext().log("The archive folder " + folder + " does not answer: archives go to " +
                                  readable(job.installation().paths().zipPath.native()) + " until the next start",
                              kLightOrange);
}

namespace {

// The lists of the database, and their history.
void registerListEditors(const ScreenContext& context, Job& job) {
    Navigator& screens = context.navigator;
    screens.add(Screen::SkipList, [&context, &job](const std::any&) {
        askShareFirst(job);
        return std::make_unique<frmSkipList>(context);
    });
    screens.add(Screen::Updatedb, [&context, &job](const std::any&) {
        askShareFirst(job);
        return std::make_unique<frmUpdatedb>(context);
    });
    screens.add(Screen::CommonHeaders, [&context, &job](const std::any&) {
        askShareFirst(job);
        return std::make_unique<frmCommonHeaders>(context, job.messages);
    });
    screens.add(Screen::Errors, [&context, &job](const std::any&) {
        askShareFirst(job);
        return std::make_unique<frmErrors>(context, job.messages);
    });
    screens.add(Screen::History, [&context, &job](const std::any&) {
        askShareFirst(job);
        return std::make_unique<frmHistory>(context);
    });
    screens.add(Screen::SectorMarkers, [&context, &job](const std::any&) {
        askShareFirst(job);
        return std::make_unique<frmSectorMarkers>(context);
    });
}

}  // namespace

void registerScreens(const ScreenContext& context, Job& job) {
    Navigator& screens = context.navigator;
    registerListEditors(context, job);
    screens.add(Screen::About, [](const std::any&) { return std::make_unique<frmABout>(); });
    screens.add(Screen::Help, [&context](const std::any& handOver) {
        auto help = std::make_unique<HelpWindow>(context.installation.appFolder() / kHelpFileName);
        if (const auto* screen = std::any_cast<QString>(&handOver))
            help->showScreen(*screen);
        return help;
    });
    screens.add(Screen::Zip, [&context](const std::any& handOver) {
        const auto* given = std::any_cast<ZipHandover>(&handOver);
        return std::make_unique<frmZip>(context, given != nullptr ? *given : ZipHandover{}, systemNetwork());
    });
    screens.add(Screen::SetupWizard,
                [&context](const std::any&) { return std::make_unique<frmSetupWizard>(context, systemNetwork()); });
    screens.add(Screen::SetupNetwork,
                [&context](const std::any&) { return std::make_unique<frmSetupNetwork>(context); });
    screens.add(Screen::BadSectors, [&context](const std::any&) { return std::make_unique<frmBadSectors>(context); });
    screens.add(Screen::PreviewBadSector, [&context](const std::any& handOver) {
        const auto* preview = std::any_cast<SectorPreview>(&handOver);
        return std::make_unique<frmPreviewBadSector>(context, preview != nullptr ? *preview : SectorPreview{});
    });
    screens.add(Screen::ViewList, [&context, &job](const std::any& handOver) {
        return std::make_unique<frmViewList>(context, viewedJob(job), std::any_cast<ViewerHandover>(&handOver));
    });
    screens.add(Screen::Overview, [&context, &job](const std::any& handOver) {
        const auto* given = std::any_cast<OverviewHandover>(&handOver);
        return std::make_unique<frmOverview>(context, job.messages, given != nullptr ? *given : OverviewHandover{});
    });
    screens.add(Screen::Copies, [&context](const std::any& handOver) {
        const auto* given = std::any_cast<CopiesHandover>(&handOver);
        return std::make_unique<frmCopies>(context, given != nullptr ? *given : CopiesHandover{});
    });
    screens.add(Screen::ExtEditor, [&context, &job](const std::any& handOver) {
        askShareFirst(job);
        // Not copied: a handover may name a million files.
        static const EditorHandover nothing;
        const auto* given = std::any_cast<EditorHandover>(&handOver);
        return std::make_unique<frmExtEditor>(context, job.messages, given != nullptr ? *given : nothing);
    });
}

}  // namespace quillon
