// SPDX-License-Identifier: MIT
// The wizard's tab "Alerts": who is told of jobs and archives.
#include "messaging/recipient_probe.h"
#include "messaging/recipient_query.h"
#include "setup/wizard.h"

namespace quillon {

namespace {

constexpr const char* kNobody = "Nobody";

}  // namespace

RecipientBox& SetupWizard::recipients(WizardRecipient which) {
    return which == WizardRecipient::Alert ? state.alertRecipients : state.zipRecipients;
}

void SetupWizard::chooseRecipient(WizardRecipient which, int index) {
    recipients(which).choose(index);
    host_.showState();
}

void SetupWizard::pressRecipientButton(WizardRecipient which) {
    const RecipientScreen screen{alertScreenRules(AlertScreen::SetupWizard),
                                 recipients(which),
                                 state.busyPointer,
                                 &state.networkStatus,
                                 [this] { host_.showState(); },
                                 warnInLog_};
    if (!screen.box.tests) {
        CNetworkEnum network(network_, surroundings_.loop);
        queryRecipients(network, screen);
        return;
    }
    const auto field = which == WizardRecipient::Alert ? RecipientField::Alert : RecipientField::Zip;
    testRecipient(field, alerts_, installation_, surroundings_, screen);
}

void SetupWizard::revertRecipient(WizardRecipient which) {
    const bool alert = which == WizardRecipient::Alert;
    const AppSettings& settings = installation_.settings;
    std::string name = toUtf8((alert ? settings.alertRecipient : settings.zipRecipient).trimmed());
    if (name.empty())
        name = kNobody;
    const std::string question = alert ? "Revert Alerts to " : "Revert Zip Alerts to ";
    if (!surroundings_.dialogs.ask("Revert Alert", question + name + " ?"))
        return;
    RecipientBox& box = recipients(which);
    box.items = {kQueryItem};
    if (name != kNobody)
        box.items.push_back(name);
    chooseRecipient(which, box.items.size() >= 2 ? 1 : 0);
}

void SetupWizard::nextAlerts() {
    installation_.settings.alertRecipient.assign(toPage(state.alertRecipients.text()));
    installation_.settings.zipRecipient.assign(toPage(state.zipRecipients.text()));
    saveAndRefresh();
    goTo(kExportTab);
}

}  // namespace quillon
