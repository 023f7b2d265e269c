// SPDX-License-Identifier: MIT
#include "messaging/notification.h"

namespace quillon {

Notified sendNotification(AlertSender& alerts, Dialogs& dialogs, Notification notification,
                          const std::string& thisComputerText) {
    alerts.setAckState(AckState::Pending);
    if (alerts.isThisComputer(notification.recipient)) {
        dialogs.warn("Error", thisComputerText);
        return Notified::ThisComputer;
    }
    if (!alerts.sendAlert(notification.recipient, kAskForAcknowledgement, notification.subject, notification.body,
                          notification.alertFlag))
        return Notified::Silent;
    alerts.turnWhilePending();
    return Notified::Sent;
}

}  // namespace quillon
