// SPDX-License-Identifier: MIT
#pragma once

// The end of a job or an archive told to another computer.

#include <cstdint>
#include <string>

#include "app/dialogs.h"
#include "messaging/alert_sender.h"

namespace quillon {

struct Notification {
    std::string recipient;
    std::string subject;
    std::string body;
    std::int16_t alertFlag = 0;  ///< 1 for a problem
};

enum class Notified {
    ThisComputer,  ///< nothing was sent, and a box has told it
    Silent,        ///< not acknowledged
    Sent           ///< acknowledged, or still pending behind the wait
};

/// Sends the notification, announced as pending, and waits for its acknowledgement. A recipient that is this computer
/// is refused with `thisComputerText`.
[[nodiscard]] Notified sendNotification(AlertSender& alerts, Dialogs& dialogs, Notification notification,
                                        const std::string& thisComputerText);

}  // namespace quillon
