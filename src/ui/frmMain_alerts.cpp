// SPDX-License-Identifier: MIT
// The recipient box of the main window: asking the network for computers, and sending one of them a test.
#include "messaging/recipient_probe.h"
#include "messaging/recipient_query.h"
#include "ui/frmMain.h"
#include "widgets/window_event_loop.h"

namespace quillon {

RecipientScreen frmMain::recipientScreen() {
    return {alertScreenRules(AlertScreen::Main),
            setup_.recipients,
            askingNetwork_,
            nullptr,
            [this] { context_.loop.flush(); },
            [this](const std::string& text) { job_.passContext().log(text, kLightOrange); }};
}

// Query Network
void frmMain::Command2_Click() {
    if (!alerts_.network)
        return;
    CNetworkEnum network(alerts_.network, context_.loop);
    queryRecipients(network, recipientScreen());
}

// Test
void frmMain::Command3_Click() {
    if (alerts_.exchange == nullptr)
        return;
    testRecipient(RecipientField::None, *alerts_.exchange, context_.installation, context_.surroundings,
                  recipientScreen());
}

}  // namespace quillon
