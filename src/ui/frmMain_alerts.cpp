// SPDX-License-Identifier: MIT
// The recipient box of the main window: asking the network for computers, and sending one of them a test.
#include <QPushButton>

#include "ui/frmMain.h"
#include "widgets/window_event_loop.h"

namespace quillon {

// Query Network
void frmMain::Command2_Click() {
    if (!alerts_.network)
        return;
    CNetworkEnum network(alerts_.network, context_.loop);
    queryRecipients(AlertScreen::Main, network, *this);
    showState();
}

// Test
void frmMain::Command3_Click() {
    if (alerts_.exchange == nullptr)
        return;
    testRecipient(setup_.recipients.text(), RecipientField::None, *alerts_.exchange, context_.installation,
                  context_.surroundings, *this);
    showState();
}

void frmMain::enableQueryButton(bool enabled) {
    Command2->setEnabled(enabled);
}

void frmMain::enableTestButton(bool enabled) {
    Command3->setEnabled(enabled);
}

void frmMain::showBusyPointer(bool busy) {
    job_.state.controls.busyPointer = busy;
    context_.loop.flush();
}

void frmMain::setRecipients(const std::vector<std::string>& items, bool enabled) {
    setup_.recipients.items = items;
    setup_.recipients.index = items.empty() ? -1 : 0;
    setup_.recipients.enabled = enabled;
    showState();
}

}  // namespace quillon
