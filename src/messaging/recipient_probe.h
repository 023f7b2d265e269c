// SPDX-License-Identifier: MIT
#pragma once

// The "Test" button of the recipient boxes: what the main window, the zip screen and the setup wizard have in common.

#include <string>

#include "app/installation.h"
#include "app/surroundings.h"
#include "messaging/alert_exchange.h"

namespace quillon {

/// The controls that a test touches.
class RecipientProbeHost {
public:
    virtual ~RecipientProbeHost() = default;
    /// The button that was pressed: Command3, Command8, or the wizard's Command9 or Command10.
    virtual void enableTestButton(bool enabled) = 0;
    /// The hourglass.
    virtual void showBusyPointer(bool busy) = 0;
    /// The wizard's Label18. The other screens are never asked.
    virtual void showTestStatus(const std::string& text) = 0;
};

/// Where the name goes when the person wants to keep it.
enum class RecipientField {
    None,   ///< the main window: the settings are saved, but no field changes
    Alert,  ///< the zip screen, and the wizard's Combo1
    Zip,    ///< the wizard's Combo2
};

/// Kept: the zip screen's test stores into the field of the main window's alerts (test
/// TheZipScreenStoresTheRecipientOfTheMainWindow).
inline constexpr RecipientField kZipScreenRecipient = RecipientField::Alert;

/// Sends a test alert to `name`, tells how it went and, when it was acknowledged, offers to save the name.
void testRecipient(const std::string& name, RecipientField field, AlertExchange& exchange, Installation& installation,
                   const Surroundings& surroundings, RecipientProbeHost& host);

}  // namespace quillon
