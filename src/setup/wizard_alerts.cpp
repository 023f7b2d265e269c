// SPDX-License-Identifier: MIT
// The wizard's tab "Alerts": who is told of jobs and archives.
#include "messaging/recipient_probe.h"
#include "messaging/recipient_query.h"
#include "setup/wizard.h"

namespace quillon {

namespace {

constexpr const char* kNobody = "Nobody";

}  // namespace

/// Shows a query or a test in one recipient box, its button and the status line.
class SetupWizard::RecipientHost final : public RecipientQueryHost, public RecipientProbeHost {
public:
    RecipientHost(SetupWizard& wizard, WizardRecipient which)
        : wizard_(wizard), which_(which), box_(wizard.recipients(which)) {}

    void enableQueryButton(bool enabled) override { enable(enabled); }
    void enableTestButton(bool enabled) override { enable(enabled); }
    void setQueryButtonCaption(const std::string& caption) override {
        box_.buttonCaption = caption;
        wizard_.host_.showState();
    }
    void showBusyPointer(bool busy) override { wizard_.showBusy(busy); }
    void showQueryStatus(const std::string& text) override { showStatus(text); }
    void showTestStatus(const std::string& text) override { showStatus(text); }
    void setRecipients(const std::vector<std::string>& items, bool enabled) override {
        box_.items = items;
        box_.enabled = enabled;
        wizard_.chooseRecipient(which_, 0);
    }

private:
    void enable(bool enabled) {
        box_.buttonEnabled = enabled;
        wizard_.host_.showState();
    }
    void showStatus(const std::string& text) {
        wizard_.state.networkStatus = text;
        wizard_.host_.showState();
    }

    SetupWizard& wizard_;
    WizardRecipient which_;
    WizardRecipients& box_;
};

WizardRecipients& SetupWizard::recipients(WizardRecipient which) {
    return which == WizardRecipient::Alert ? state.alertRecipients : state.zipRecipients;
}

void SetupWizard::chooseRecipient(WizardRecipient which, int index) {
    WizardRecipients& box = recipients(which);
    box.index = index;
    if (!box.items.empty()) {
        const RecipientButton button = recipientButtonFor(box.text());
        box.buttonCaption = button.caption;
        box.buttonEnabled = button.enabled;
    }
    host_.showState();
}

void SetupWizard::pressRecipientButton(WizardRecipient which) {
    RecipientHost host(*this, which);
    if (recipients(which).buttonCaption == kQueryItem) {
        CNetworkEnum network(network_, surroundings_.loop);
        queryRecipients(AlertScreen::SetupWizard, network, host);
        return;
    }
    const auto field = which == WizardRecipient::Alert ? RecipientField::Alert : RecipientField::Zip;
    testRecipient(recipients(which).text(), field, alerts_, installation_, surroundings_, host);
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
    WizardRecipients& box = recipients(which);
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
