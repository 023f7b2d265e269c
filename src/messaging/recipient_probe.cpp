// SPDX-License-Identifier: MIT
#include "messaging/recipient_probe.h"

#include "text/list_text.h"
#include "text/page_text.h"

namespace quillon {

namespace {

std::string noConnectionText(const std::string& name) {
    return "Unable to connect to computer " + readable(name) +
           "\r\n"
           "The problem is one of the following\r\n"
           "\r\n"
           "1 The computer is turned off.\r\n"
           "2 The ZOV Messaging software is not installed on the remote computer.\r\n"
           "3 The Remote computer is listening on the wrong port.\r\n"
           "4 The Remote computer's firewall is blocking communication.\r\n"
           "5 This computer's firewall is not allowing messages to be sent.\r\n";
}

std::string notSentText(const std::string& error) {
    return "Unable to send test message. The system returned the following error code : " + error +
           "\r\n"
           "If this system is running the ZOV-Messenger, then this machine will be unable to send messages "
           "as the ports it needs to send data are listening for data coming from other machines.";
}

std::string saveQuestion(const std::string& name, bool portConflict) {
    const std::string question =
        "Do you want to save " + readable(name) + " to receive all future messages from this computer ?";
    return portConflict ? question : "Message sent and acknowledgement received. " + question;
}

void saveRecipient(const std::string& name, RecipientField field, Installation& installation) {
    if (field == RecipientField::Alert)
        installation.settings.alertRecipient.assign(toPage(name));
    if (field == RecipientField::Zip)
        installation.settings.zipRecipient.assign(toPage(name));
    passOver(installation.saveSettingsRecord(), "the record in memory goes on, as after every failed save");
}

void begin(AlertExchange& exchange, const RecipientScreen& screen) {
    exchange.clearState();
    if (screen.rules.showsStatus)
        exchange.closeSockets();
    screen.showStatus("Testing network messaging, please wait ... ");
    if (screen.rules.disablesButton)
        screen.enable(screen.box.testEnabled, false);
}

void end(const RecipientScreen& screen) {
    screen.showBusy(false);
    screen.enable(screen.box.testEnabled, true);
    screen.showStatus("");
}

// The told text names everything that may be wrong; what is known of it stands behind the button and in the log.
void tellNoConnection(const std::string& name, const std::string& cause, Dialogs& dialogs,
                      const RecipientScreen& screen) {
    if (screen.log)
        screen.log("No answer from " + readable(name) + " : " + cause);
    MessageBox box{"Communication error", noConnectionText(name), BoxStyle::Warning, BoxButtons::Ok};
    box.details = cause;
    dialogs.show(box);
}

}  // namespace

void testRecipient(RecipientField field, AlertExchange& exchange, Installation& installation,
                   const Surroundings& surroundings, const RecipientScreen& screen) {
    const std::string name = screen.box.text();
    begin(exchange, screen);
    if (screen.rules.testRefusesThisComputer && exchange.isThisComputer(name)) {
        surroundings.dialogs.tell("UDP Conflict", "Unable to send messages to computer with same name.");
        end(screen);
        return;
    }
    screen.showBusy(true);
    std::string subject = "Test from quillon system";
    const bool sent =
        exchange.sendAlert(name, kAskForAcknowledgement, subject, "Future messages can be viewed here.", 0);
    end(screen);
    if (!sent) {
        tellNoConnection(name, exchange.silenceCause(), surroundings.dialogs, screen);
    } else if (exchange.ackState() == AckState::Acknowledged) {
        if (surroundings.dialogs.ask("Save as default?", saveQuestion(name, exchange.portConflict())))
            saveRecipient(name, field, installation);
    } else if (screen.rules.testTellsOddState && !exchange.portConflict()) {
        surroundings.dialogs.warn("Error", notSentText(exchange.errorText()));
    }
}

}  // namespace quillon
